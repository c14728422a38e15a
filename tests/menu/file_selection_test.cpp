// Entries that ask for a file, with the real dialog.

#include "Menu.h"

#include <QDir>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTimer>

namespace {

class OwnFile : public KsMenuFileSelectionAuditor {
public:
    void menuFileSelection(KsMenuFileSelection* selection) override
    {
        names.push_back(selection->filename.getValue().toUtf8());
        if (then) then(selection);
    }
    std::vector<std::string> names;
    std::function<void(KsMenuFileSelection*)> then;
};

/// Answers the next file dialog from within its event loop.
void answer(const std::function<void(QFileDialog*)>& act)
{
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [=] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        timer->stop();
        timer->deleteLater();
        act(dialog);
    });
    timer->start(5);
}

void choose(QFileDialog* dialog, const QString& file)
{
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
    QMetaObject::invokeMethod(dialog, "accept");
}

class Selection : public testing::Test {
protected:
    void start(const std::string& fields, Stage::Road road = Stage::Window)
    {
        stage = std::make_unique<MenuStage>(
            "TopLevelDialog { position3D 100 50 0 MenuBar { MenuPopup { label \"M\" auditorID "
            "\"m\" MenuFileSelection { label \"Open\" auditorID \"open\" fileDirectory \"" +
                folder.path().toStdString() + "\" " + fields + " } } } }",
            road);
        selection = stage->find<KsMenuFileSelection>("open");
        selection->addAuditor(&own);
    }
    void touch(const QString& name)
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    }
    std::string directory() const { return selection->fileDirectory.getValue().toUtf8(); }
    std::string name() const { return selection->filename.getValue().toUtf8(); }

    QTemporaryDir folder;
    std::unique_ptr<MenuStage> stage;
    KsMenuFileSelection* selection = nullptr;
    OwnFile own;
};

} // namespace

TEST_F(Selection, theChosenFileIsReportedInTwoParts)
{
    touch("a.arb");
    start("title \"Which one?\"");
    answer([&](QFileDialog* dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Which one?");
        EXPECT_EQ(dialog->nameFilters(), QStringList({"Arborium file (*.arb)", ""}));
        EXPECT_EQ(dialog->directory().canonicalPath(), QDir(folder.path()).canonicalPath());
        EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptOpen);
        choose(dialog, folder.filePath("a.arb"));
    });
    stage->clickThrough({"M", "Open"});
    EXPECT_EQ(name(), "a.arb");
    EXPECT_EQ(directory(), folder.path().toStdString());
    EXPECT_EQ(own.names, std::vector<std::string>({"a.arb"}));
}

TEST_F(Selection, aCancelEmptiesTheNameAndIsReportedToo)
{
    start("filename \"old\"");
    answer([](QFileDialog* dialog) { dialog->reject(); });
    stage->clickThrough({"M", "Open"});
    EXPECT_EQ(name(), "");
    EXPECT_EQ(directory(), folder.path().toStdString());
    EXPECT_EQ(own.names, std::vector<std::string>({""}));
}

TEST_F(Selection, savesToANewFileAndTheNextDialogOpensThere)
{
    start("mode SAVE filter [ ]");
    ASSERT_TRUE(QDir(folder.path()).mkdir("inner"));
    answer([&](QFileDialog* dialog) {
        EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
        choose(dialog, folder.filePath("inner/new.txt"));
    });
    stage->clickThrough({"M", "Open"});
    EXPECT_EQ(name(), "new.txt");
    EXPECT_EQ(directory(), folder.filePath("inner").toStdString());
    EXPECT_FALSE(QFile::exists(folder.filePath("inner/new.txt"))) << "the application saves";
    answer([&](QFileDialog* dialog) {
        EXPECT_EQ(dialog->directory().canonicalPath(),
                  QDir(folder.filePath("inner")).canonicalPath());
        dialog->reject();
    });
    stage->clickThrough({"M", "Open"});
}

TEST_F(Selection, filtersArePairsAndTheFirstOneIsShown)
{
    start("filter [ \"*.a *.b\", \"First\", \"*.c\", \"Second\", \"odd\" ] defaultFilter 1");
    answer([](QFileDialog* dialog) {
        EXPECT_EQ(dialog->nameFilters(), QStringList({"First (*.a *.b)", "Second (*.c)", ""}));
        EXPECT_EQ(dialog->selectedNameFilter(), "First (*.a *.b)");
        dialog->reject();
    });
    stage->clickThrough({"M", "Open"});
    selection->filter.setNum(0);
    answer([](QFileDialog* dialog) {
        EXPECT_LE(dialog->nameFilters().size(), 1) << "all files";
        dialog->reject();
    });
    stage->clickThrough({"M", "Open"});
}

TEST_F(Selection, namesMayHoldBlanksQuotesAndUnicode)
{
    start("");
    for (const char* each : {"with blank.arb", "it's `quoted`.arb", "na\xC3\xAFve.arb",
                             "\xD0\x96\xD1\x83\xD0\xBA.arb", "\xF0\x9F\x90\x9B.arb"}) {
        const QString file = QString::fromUtf8(each);
        touch(file);
        answer([&](QFileDialog* dialog) { choose(dialog, folder.filePath(file)); });
        stage->clickThrough({"M", "Open"});
        EXPECT_EQ(name(), each);
        EXPECT_EQ(directory(), folder.path().toStdString());
    }
}

TEST_F(Selection, aNameWithDoubleQuotesIsChosenFromTheList)
{
    // The dialog's name field would read it as several names.
    const QString file = "a \"quoted\" name.arb";
    touch("another.arb");
    touch(file);
    start("");
    answer([&](QFileDialog* dialog) {
        auto* list = dialog->findChild<QListView*>("listView");
        ASSERT_TRUE(list);
        QModelIndex found;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            const QModelIndex root = list->rootIndex();
            for (int i = 0; i < list->model()->rowCount(root); ++i) {
                const QModelIndex each = list->model()->index(i, 0, root);
                if (each.data().toString() == file) found = each;
            }
            return found.isValid();
        }));
        list->scrollTo(found);
        const QPoint place = list->visualRect(found).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        if (dialog->isVisible()) dialog->reject();
    });
    stage->clickThrough({"M", "Open"});
    EXPECT_EQ(QString::fromStdString(name()), file);
    EXPECT_EQ(directory(), folder.path().toStdString());
    // The next dialog, and a file of the scene, take the name as it is.
    answer([](QFileDialog* dialog) { dialog->reject(); });
    selection->title = "with \"quotes\"";
    stage->clickThrough({"M", "Open"});
    EXPECT_EQ(own.names.back(), "");
}

TEST_F(Selection, aDirectoryThatIsGoneOpensElsewhere)
{
    start("");
    selection->fileDirectory = KbString(folder.filePath("gone").toStdString());
    answer([](QFileDialog* dialog) {
        EXPECT_TRUE(dialog->directory().exists());
        dialog->reject();
    });
    stage->clickThrough({"M", "Open"});
    EXPECT_EQ(name(), "");
    EXPECT_EQ(directory(), folder.filePath("gone").toStdString());
}

TEST_F(Selection, inASceneItIsReportedTwiceAndTheGrabIsOver)
{
    touch("a.arb");
    start("", Stage::Scene);
    stage->clickOn({"m"});
    const KbVec2f place = stage->placeOf(selection, "btnSep");
    answer([&](QFileDialog* dialog) {
        EXPECT_FALSE(stage->click(KbVec2f(Stage::viewWidth - 1, 1))) << "nobody has grabbed";
        choose(dialog, folder.filePath("a.arb"));
    });
    stage->click(place);
    EXPECT_EQ(own.names, std::vector<std::string>({"a.arb", "a.arb"}));
    EXPECT_FALSE(stage->isDrawn(selection)) << "the menu is closed";
    stage->clickOn({"m"});
    answer([](QFileDialog* dialog) { dialog->reject(); });
    stage->clickOn({"open"});
    EXPECT_EQ(own.names, std::vector<std::string>({"a.arb", "a.arb", "", ""}));
}

TEST_F(Selection, whatIsDraggedInTheSceneIsLetGoBeforeTheDialogOpens)
{
    start("accelerator \"Ctrl+O\"", Stage::Both);
    QWidget* window = stage->dialog->getBaseWidget();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    const KbVec3f place = stage->dialog->position3D;
    const KbVec2f title = stage->placeOf(stage->dialog, "labelSep");
    stage->press(title);
    stage->move(title + KbVec2f(5, 0));
    const KbVec3f dragged = stage->dialog->position3D;
    EXPECT_TRUE(dragged.equals(place + KbVec3f(5, 0, 0), 1e-3f));
    answer([&](QFileDialog* dialog) {
        stage->move(title + KbVec2f(50, 50));
        dialog->reject();
    });
    QTest::keyClick(window, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(own.names, std::vector<std::string>({""}));
    stage->move(title + KbVec2f(70, 70));
    stage->release(title);
    EXPECT_EQ(stage->dialog->position3D.getValue(), dragged)
        << "the release went elsewhere; nothing is dragged any more";
}

TEST_F(Selection, theDialogMayGoWhileTheFileDialogIsOpen)
{
    for (const Stage::Road road : {Stage::Window, Stage::Scene}) {
        start("", road);
        const KsRef<KsMenuFileSelection> hold(selection);
        answer([&](QFileDialog* dialog) {
            stage->dialog->removeAuditor(&stage->listener);
            stage->dropDialog();
            dialog->reject();
        });
        if (road == Stage::Window) {
            stage->clickThrough({"M", "Open"});
        } else {
            stage->clickOn({"m"});
            stage->clickPart(selection, "btnSep");
        }
        EXPECT_FALSE(stage->dialog);
        hold->removeAuditor(&own);
    }
}
