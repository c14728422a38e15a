// The program formweave, run as a person runs it.

#include <QtTest/QtTest>
#include <gtest/gtest.h>

namespace {

const QString example = FORMWEAVE_SOURCE_DIR "/examples/render-settings.arb";

struct Result {
    int status = -1;
    QString out, err;
};

QProcessEnvironment environment()
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove("DISPLAY");
    variables.remove("WAYLAND_DISPLAY");
    variables.remove("ARBHOME");
    return variables;
}

Result run(const QStringList& arguments, const QProcessEnvironment& variables = environment(),
           const QString& directory = {}, const QString& shell = {})
{
    QProcess process;
    process.setProcessEnvironment(variables);
    if (!directory.isEmpty()) process.setWorkingDirectory(directory);
    if (shell.isEmpty())
        process.start(FORMWEAVE_TOOL, arguments);
    else // a shell that sets something up for the program
        process.start("sh", QStringList{"-c", shell + "; exec \"$0\" \"$@\"", FORMWEAVE_TOOL} +
                                arguments);
    Result result;
    if (!process.waitForFinished(40000)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << "formweave " << qPrintable(arguments.join(' ')) << " does not end";
        return result;
    }
    if (process.exitStatus() == QProcess::NormalExit) result.status = process.exitCode();
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

class Tool : public testing::Test {
protected:
    QString file(const char* name) const { return scratch.filePath(name); }
    QString write(const char* name, const QByteArray& contents) const
    {
        QFile target(file(name));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        target.write(contents);
        return target.fileName();
    }
    static QByteArray contents(const QString& path)
    {
        QFile source(path);
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }
    static int numColours(const QImage& image)
    {
        QSet<QRgb> colours;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) colours.insert(image.pixel(x, y));
        }
        return colours.size();
    }

    QTemporaryDir scratch;
};

const char* const broken = "#Arborium V2.1 ascii\n"
                           "TopLevelDialog {\n"
                           "  label \"a\"\n"
                           "  lable \"b\"\n"
                           "  DialogCheckBox { state MAYBE }\n"
                           "}\n";

} // namespace

TEST_F(Tool, helpAndVersionStandEverywhere)
{
    for (const char* command : {"", "view", "render", "check", "tree"}) {
        const QStringList before = *command ? QStringList{command} : QStringList{};
        const Result help = run(before + QStringList{"--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_TRUE(help.out.startsWith(QString("usage: formweave %1").arg(command)))
            << qPrintable(help.out);
        EXPECT_EQ(help.err, "");
        const Result version = run(before + QStringList{"--version"});
        EXPECT_EQ(version.status, 0);
        EXPECT_TRUE(
            QRegularExpression("^formweave \\d+(\\.\\d+)+\n$").match(version.out).hasMatch())
            << qPrintable(version.out);
    }
}

TEST_F(Tool, aWrongCallGivesOneLineOfHelpAndStatus2)
{
    const QStringList calls[] = {
        {},
        {"--wrong"},
        {"show", example},
        {"check"},
        {"check", example, "--3d"},
        {"render", example},
        {"render", example, "-o"},
        {"render", example, example, "-o", "x.png"},
        {"render", example, "-o", "x.png", "--size", "12"},
        {"render", example, "-o", "x.png", "--size", "0x5"},
        {"render", example, "-o", "x.png", "--scale", "2x"},
        {"render", example, "-o", "x.png", "--2d", "--3d"},
        {"render", example, "-o", "x.png", "--watch"},
        {"tree", example, "--id"},
        {"tree", example, "--i", "x"},
        {"view", example, "--watch=yes"},
        {"view", example, "-o", "x.png"},
    };
    for (const QStringList& call : calls) {
        const Result result = run(call, environment(), scratch.path());
        const std::string what = call.join(' ').toStdString();
        EXPECT_EQ(result.status, 2) << what;
        EXPECT_EQ(result.out, "") << what;
        EXPECT_EQ(result.err.count('\n'), 1) << what;
        EXPECT_TRUE(result.err.contains("usage: formweave")) << what;
    }
    EXPECT_FALSE(QFile::exists(file("x.png")));
}

TEST_F(Tool, checkIsSilentAboutAGoodFile)
{
    const Result result = run({"check", example});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

TEST_F(Tool, checkHasNothingToSayOfTheExamples)
{
    QStringList arguments{"check"};
    QDirIterator files(FORMWEAVE_SOURCE_DIR "/examples", {"*.arb"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) arguments << files.next();
    EXPECT_GT(arguments.size(), 10);
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
}

TEST_F(Tool, checkTellsAllErrorsOfAllFilesWithTheirPlaces)
{
    const QString bad = write("bad.arb", broken);
    const QString missing = file("missing.arb");
    const Result result = run({"check", bad, example, missing});
    EXPECT_EQ(result.status, 1);
    const QStringList lines = result.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3) << qPrintable(result.out);
    EXPECT_TRUE(lines[0].startsWith(bad + ":4:3: ")) << qPrintable(lines[0]);
    EXPECT_TRUE(lines[0].contains("\"label\"")) << qPrintable(lines[0]);
    EXPECT_TRUE(lines[1].startsWith(bad + ":5:26: ")) << qPrintable(lines[1]);
    EXPECT_TRUE(lines[2].startsWith(missing)) << qPrintable(lines[2]);
}

TEST_F(Tool, checkTellsOfUtf8ThatTheFileDoesNotAnnounce)
{
    const QByteArray dialog = "\nTopLevelDialog {\n  label \"Espa\xc3\xb1ol\"\n}\n";
    for (const char* told : {"#Arborium V2.1 ascii utf8", "\xef\xbb\xbf#Arborium V2.1 ascii"})
        EXPECT_EQ(run({"check", write("told.arb", told + dialog)}).status, 0) << told;
    const QByteArray latin = QByteArray(dialog).replace("\xc3\xb1", "\xf1");
    EXPECT_EQ(run({"check", write("latin.arb", "#Arborium V2.1 ascii" + latin)}).status, 0);
    const QString path = write("untold.arb", "#Arborium V2.1 ascii" + dialog);
    const Result untold = run({"check", path});
    EXPECT_EQ(untold.status, 1);
    EXPECT_TRUE(untold.out.startsWith(path + ":3: characters in UTF-8")) << qPrintable(untold.out);
}

TEST_F(Tool, checkTellsWhereAFormatIsBad)
{
    const QString bad = write("format.arb", "#Arborium V2.1 ascii\nRowDialog {\n"
                                            "  DialogRealSlider { format \"%.2f m\" }\n"
                                            "  DialogIntegerSlider { format \"%d%s\" }\n}\n");
    const Result result = run({"check", bad});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.startsWith(bad + ":4:32: ")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("\"%d%s\"")) << qPrintable(result.out);
    EXPECT_EQ(result.out.count(bad), 1) << qPrintable(result.out);
    EXPECT_EQ(result.out.count('\n'), 1) << qPrintable(result.out);
}

TEST_F(Tool, checkSpeaksOfEmptyAndBinaryFilesAndDirectories)
{
    for (const QString& path :
         {write("empty.arb", ""), write("header.arb", "#Somebody V2.1 ascii\n"),
          write("garbage.arb", QByteArray("\0\xff\x01\x80garbage\0", 13)), scratch.path()}) {
        const Result result = run({"check", path});
        EXPECT_EQ(result.status, 1) << qPrintable(path);
        EXPECT_TRUE(result.out.startsWith(path)) << qPrintable(result.out);
        EXPECT_EQ(result.err, "");
    }
}

TEST_F(Tool, treeListsTheElementsWithTheSizesOfTheLayout)
{
    const Result result = run({"tree", example});
    EXPECT_EQ(result.status, 0) << qPrintable(result.err);
    const QStringList lines = result.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 15) << qPrintable(result.out);
    const QRegularExpression top(
        "^TopLevelDialog  id \"renderer\"  label \"Renderer settings\"  \\d+ x \\d+$");
    const QRegularExpression leaf(
        "^      DialogCheckBox  id \"antialiasing\"  label \"Anti-aliasing\"  (\\d+) x (\\d+)$");
    EXPECT_TRUE(top.match(lines[0]).hasMatch()) << qPrintable(lines[0]);
    const auto match = leaf.match(lines[3]);
    ASSERT_TRUE(match.hasMatch()) << qPrintable(lines[3]);
    EXPECT_GT(match.captured(1).toInt(), 60);
    EXPECT_GT(match.captured(2).toInt(), 10);
}

TEST_F(Tool, treeTellsTheSizesInTheDialogsOfALauncherToo)
{
    const QString path = write(
        "launcher.arb", "#Arborium V2.1 ascii\n"
                        "TopLevelDialog { DialogPushButtonLauncher { TopLevelDialog {\n"
                        "  label \"Inner\" width 300 DialogCheckBox { label \"In\" } } } }\n");
    const Result result = run({"tree", path});
    EXPECT_EQ(result.status, 0) << qPrintable(result.err);
    const QRegularExpression inner("\n      DialogCheckBox  label \"In\"  300 x \\d+\n");
    EXPECT_TRUE(inner.match(result.out).hasMatch()) << qPrintable(result.out);
}

TEST_F(Tool, anIdChoosesTheElement)
{
    const QString two = write("two.arb", "#Arborium V2.1 ascii\n"
                                         "DialogCheckBox { auditorID \"a\" label \"A\" }\n"
                                         "TopLevelDialog { auditorID \"b\" }\n");
    EXPECT_EQ(run({"tree", two}).out.count('\n'), 2);
    const Result one = run({"tree", two, "--id", "b"});
    EXPECT_EQ(one.out.count('\n'), 1);
    EXPECT_TRUE(one.out.startsWith("TopLevelDialog"));
    const Result none = run({"tree", two, "--id=c"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err.count('\n'), 1);
    EXPECT_TRUE(none.err.contains("\"c\"")) << qPrintable(none.err);
}

TEST_F(Tool, rendersAWindowWithoutADisplay)
{
    const QString path = file("window.png");
    const Result result = run({"render", example, "-o", path});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const QImage image(path);
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(image.width(), 200);
    EXPECT_GT(numColours(image), 8);

    // Twice the pixels of the same window.
    ASSERT_EQ(run({"render", example, "-o", path, "--2d", "--scale", "2"}).status, 0);
    EXPECT_EQ(QImage(path).size(), image.size() * 2);
    ASSERT_EQ(run({"render", example, "-o", path, "--size", "500x300", "--scale", "0.5"}).status,
              0);
    EXPECT_EQ(QImage(path).size(), QSize(250, 150));
}

TEST_F(Tool, rendersAPanelWithoutADisplay)
{
    const QString path = file("panel.png");
    const Result result = run({"render", example, "-o", path, "--3d"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const QImage image(path);
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(image.width(), 200);
    EXPECT_GT(numColours(image), 30);

    ASSERT_EQ(
        run({"render", example, "-o", path, "--3d", "--size", "640x320", "--scale", "1.5"}).status,
        0);
    EXPECT_EQ(QImage(path).size(), QSize(960, 480));
}

TEST_F(Tool, aPictureOnAFullDeviceIsAnErrorAndLeavesTheOldOne)
{
    const QString path = write("old.png", "old");
    for (const char* presentation : {"--2d", "--3d"}) {
        // No file may grow beyond 512 bytes, which stands in for the full device.
        const Result result = run({"render", example, "-o", path, presentation}, environment(), {},
                                  "trap '' XFSZ; ulimit -f 1");
        EXPECT_EQ(result.status, 1) << presentation;
        EXPECT_TRUE(result.err.contains("old.png")) << qPrintable(result.err);
        EXPECT_TRUE(result.err.contains("cannot be written")) << qPrintable(result.err);
        EXPECT_EQ(contents(path), "old");
        EXPECT_EQ(QDir(scratch.path()).entryList(QDir::Files | QDir::Hidden),
                  QStringList{"old.png"});
    }
}

TEST_F(Tool, aSkinChangesThePanel)
{
    const QString plain = file("plain.png"), dark = file("dark.png");
    ASSERT_EQ(run({"render", example, "-o", plain, "--3d", "--skin", "default"}).status, 0);
    const Result result = run({"render", example, "-o", dark, "--3d", "--skin", "dark"});
    ASSERT_EQ(result.status, 0) << qPrintable(result.err);
    const QImage a(plain), b(dark);
    ASSERT_EQ(a.size(), b.size());
    const QPoint onTheFrame(a.width() / 2, 20);
    EXPECT_GT(qGray(a.pixel(onTheFrame)), qGray(b.pixel(onTheFrame)) + 60);

    const Result none = run({"render", example, "-o", file("x.png"), "--skin", "none"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err.count('\n'), 1);
}

TEST_F(Tool, aComponentWithoutADialogCanBeRenderedInBothWays)
{
    const QString alone = write("alone.arb", "#Arborium V2.1 ascii\n"
                                             "DialogCheckBox { label \"Alone\" state TRUE }\n");
    const QString path = file("alone.png");
    for (const char* presentation : {"--2d", "--3d"}) {
        QFile::remove(path);
        const Result result = run({"render", alone, "-o", path, presentation});
        EXPECT_EQ(result.status, 0) << presentation << qPrintable(result.err);
        EXPECT_GT(numColours(QImage(path)), 4) << presentation;
    }
}

TEST_F(Tool, aComponentWithoutADialogIsRenderedInTheSizeThatItAsksFor)
{
    const QString row = write("row.arb", "#Arborium V2.1 ascii\nRowDialog {\n"
                                         "DialogCheckBox { label \"A label that needs room\" }\n"
                                         "DialogCheckBox { label \"Another\" }\n}\n");
    const QString path = file("row.png");
    const Result result = run({"render", row, "-o", path, "--2d"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const QImage picture(path);
    EXPECT_GT(picture.width(), 140) << "the label alone is longer";
    EXPECT_GT(picture.height(), 40);
}

TEST_F(Tool, aBrokenFileOrTargetLeavesAnEarlierPictureAsItWas)
{
    const QString bad = write("bad.arb", broken);
    const QString picture = write("old.png", "an old picture");
    for (const char* presentation : {"--2d", "--3d"}) {
        const Result result = run({"render", bad, "-o", picture, presentation});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err.count('\n'), 2) << qPrintable(result.err);
        EXPECT_EQ(contents(picture), "an old picture");

        const Result nowhere = run({"render", example, "-o", file("no/such.png"), presentation});
        EXPECT_EQ(nowhere.status, 1);
        EXPECT_EQ(nowhere.err.count('\n'), 1) << qPrintable(nowhere.err);
    }
}

TEST_F(Tool, menusAreOpenInAPictureIfThatIsWanted)
{
    const QString menus = FORMWEAVE_SOURCE_DIR "/examples/editor.arb";
    for (const QString presentation : {"--2d", "--3d"}) {
        const QString closed = file("closed.png"), open = file("open.png");
        ASSERT_EQ(run({"render", menus, "-o", closed, presentation}).status, 0);
        const Result result =
            run({"render", menus, "-o", open, presentation, "--open", "olderMenu"});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "") << "what its platform lacks is nobody's concern";
        const QImage without(closed), with(open);
        // Three menus beside each other reach beyond the dialog.
        EXPECT_GT(with.width(), without.width() + 30) << presentation.toStdString();
        EXPECT_GE(with.height(), without.height());
        ASSERT_EQ(run({"render", menus, "-o", open, presentation, "--open", "fileMenu", "--size",
                       "300x250"})
                      .status,
                  0);
        EXPECT_EQ(QImage(open).size(), QSize(300, 250));
    }
    for (const QString id : {"none", "material", "new"}) {
        const Result result = run({"render", menus, "-o", file("x.png"), "--open", id});
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.err.indexOf("there is no menu \"" + id + "\""), -1)
            << result.err.toStdString();
    }
}

TEST_F(Tool, viewSaysThatThereIsNoDisplay)
{
    QProcessEnvironment variables = environment();
    variables.remove("QT_QPA_PLATFORM");
    const Result result = run({"view", example}, variables);
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.contains("there is no display")) << qPrintable(result.err);
}

TEST_F(Tool, viewOfABrokenFileEndsWithItsErrors)
{
    const Result result = run({"view", write("bad.arb", broken)});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err.count('\n'), 2) << qPrintable(result.err);
}

TEST_F(Tool, viewReadsAFileAgainWhenItChangesAndKeepsTheLastGoodOne)
{
    const QByteArray good = contents(example);
    const QString path = write("watched.arb", good);
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(FORMWEAVE_TOOL, {"view", path, "--both", "--watch"});
    ASSERT_TRUE(process.waitForStarted());
    QByteArray out;
    // Repeats the change until it is seen: the program may not watch yet.
    const auto change = [&](const std::function<void()>& write, const char* expected) {
        const int seen = out.count(expected);
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 20000) {
            write();
            process.waitForReadyRead(1000);
            out += process.readAllStandardOutput();
            if (out.count(expected) > seen) return true;
        }
        return false;
    };
    int n = 0;
    EXPECT_TRUE(change([&] { write("watched.arb", good + "# " + QByteArray::number(++n) + '\n'); },
                       "read again"));
    EXPECT_TRUE(change([&] { write("watched.arb", good + "}" + QByteArray::number(++n) + '\n'); },
                       "is broken"));
    // Replaced by another file, as editors do.
    EXPECT_TRUE(change(
        [&] {
            write("new.arb", good + "# " + QByteArray::number(++n) + '\n');
            QFile::remove(path);
            QFile::rename(file("new.arb"), path);
        },
        "read again"));
    EXPECT_EQ(process.state(), QProcess::Running);
    EXPECT_TRUE(process.readAllStandardError().contains("watched.arb:"));
    process.terminate();
    process.waitForFinished();
}
