// What the documents show is what there is: dialog files open, programs stand in the examples, links
// lead somewhere, and the tables of the format are complete.

#include <arborium/base/KsType.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsSeparator.h>
#include <formweave/formweave.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QString root = QStringLiteral(FORMWEAVE_SOURCE_DIR) + "/";

QString contentsOf(const QString& path)
{
    QFile file(root + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

QStringList documents()
{
    QStringList all{"README.md", "CHANGELOG.md"};
    for (const QString& name : QDir(root + "docs").entryList({"*.md"})) all << "docs/" + name;
    return all;
}

/// What stands between fences that bear `language`.
QStringList blocksOf(const QString& document, const QString& language)
{
    QStringList blocks;
    QString block;
    bool within = false, wanted = false;
    for (const QString& line : contentsOf(document).split('\n')) {
        if (line.startsWith("```")) {
            if (within && wanted) blocks << block;
            within = !within;
            wanted = within && line.mid(3) == language;
            block.clear();
        } else if (within) {
            block += line + '\n';
        }
    }
    EXPECT_FALSE(within) << qPrintable(document);
    return blocks;
}

QString withoutIndentation(const QString& text)
{
    QString result;
    for (const QString& line : text.split('\n')) result += line.trimmed() + '\n';
    return result;
}

/// The name by which a heading can be linked to.
QString anchorOf(const QString& heading)
{
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber() || c == '-' || c == '_') anchor += c;
        if (c == ' ') anchor += '-';
    }
    return anchor;
}

QStringList anchorsOf(const QString& document)
{
    QStringList anchors;
    for (const QString& line : contentsOf(document).split('\n')) {
        const int level = line.indexOf(' ');
        if (level > 0 && line.left(level) == QString(level, '#'))
            anchors << anchorOf(line.mid(level + 1));
    }
    return anchors;
}

} // namespace

TEST(Documents, everyDialogFileInThemOpens)
{
    KsFormweave::init();
    const QTemporaryDir directory;
    int count = 0;
    for (const QString& document : documents()) {
        for (const QString& block : blocksOf(document, "")) {
            if (!block.startsWith("#Arborium")) continue;
            const QString name = directory.filePath(QString("%1.arb").arg(++count));
            QFile file(name);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(block.toUtf8());
            file.close();
            KsFormweave* dialog = KsFormweave::loadFromFile(KbString(name.toStdString()));
            EXPECT_TRUE(dialog) << qPrintable(document + ":\n" + block);
            if (dialog) dialog->unref();
        }
    }
    EXPECT_GE(count, 2);
    KsFormweave::finish();
}

TEST(Documents, everyProgramInThemStandsInTheExamples)
{
    QStringList examples;
    for (const QString& name : QDir(root + "examples").entryList({"*.cpp"}))
        examples << withoutIndentation(contentsOf("examples/" + name));
    int count = 0;
    for (const char* document : {"README.md", "docs/using.md", "docs/scenes.md"}) {
        for (const QString& block : blocksOf(document, "cpp")) {
            ++count;
            const QString program = withoutIndentation(block).trimmed() + '\n';
            const bool found = std::any_of(examples.begin(), examples.end(), [&](const QString& e) {
                // Whole programs stand below the line that says what they are.
                return e.contains('\n' + program) &&
                       (!program.contains("int main") || e.endsWith("\n\n" + program + '\n'));
            });
            EXPECT_TRUE(found) << document << ":\n" << qPrintable(block);
        }
    }
    EXPECT_GE(count, 4);
}

TEST(Documents, everyLinkLeadsSomewhere)
{
    const QRegularExpression link("\\]\\(([^)# ]*)(?:#([^) ]*))?\\)");
    int count = 0;
    for (const QString& document : documents()) {
        const QString text = contentsOf(document);
        for (auto each = link.globalMatch(text); each.hasNext();) {
            const auto match = each.next();
            const QString target = match.captured(1), anchor = match.captured(2);
            if (target.contains("://")) continue;
            ++count;
            const QString path = target.isEmpty()
                                     ? document
                                     : QDir::cleanPath(QFileInfo(document).path() + '/' + target);
            EXPECT_TRUE(QFileInfo::exists(root + path))
                << qPrintable(document + " links to " + match.captured(0));
            if (!anchor.isEmpty() && QFileInfo::exists(root + path)) {
                EXPECT_TRUE(anchorsOf(path).contains(anchor))
                    << qPrintable(document + " links to " + match.captured(0));
            }
        }
    }
    EXPECT_GE(count, 20);
}

TEST(Documents, theFormatNamesEveryNodeOfADialog)
{
    KsFormweave::init();
    const QString text = contentsOf("docs/files.md");
    // Only there for others to derive from.
    const QStringList bases{"Formweave",    "TopComponent", "DialogComponent", "DialogGroup",
                            "DialogChoice", "DialogSlider", "MenuItem"};
    int count = 0;
    KsType::forEach([&](KsType type) {
        const QString name = type.getName().getString();
        if (!type.isDerivedFrom(KsFormweave::getClassTypeId()) || bases.contains(name)) return;
        ++count;
        EXPECT_TRUE(text.contains('`' + name + '`')) << qPrintable(name);
    });
    EXPECT_EQ(count, 33 - bases.size());
    KsFormweave::finish();
}

TEST(Documents, theFormatTellsEveryLimitWithItsDefault)
{
    const QString text = contentsOf("docs/files.md");
    const QRegularExpression limit("std::int\\d+_t (\\w+) = ([^;]+);");
    const QString header = contentsOf("arborium/include/arborium/base/KsLimits.h");
    int count = 0;
    for (auto each = limit.globalMatch(header); each.hasNext(); ++count) {
        const auto match = each.next();
        const QString value = match.captured(2);
        qint64 number = value.section(' ', 0, 0).remove("LL").toLongLong();
        const QString operation = value.section(' ', 1, 1);
        const qint64 operand = value.section(' ', 2, 2).toLongLong();
        if (operation == "<<") number <<= operand;
        if (operation == "*") number *= operand;
        const QRegularExpression row("\\| `" + match.captured(1) + "` \\| ([^|]+) \\|");
        QString told = row.match(text).captured(1);
        const qint64 unit = told.endsWith(" MiB") ? 1 << 20 : 1;
        told.remove(" MiB").remove(' ');
        EXPECT_EQ(told.toLongLong() * unit, number) << qPrintable(match.captured(1));
    }
    EXPECT_GE(count, 15);
}
