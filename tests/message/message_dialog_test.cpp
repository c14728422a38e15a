// Message boxes, closed by a person while `show` waits.

#include "Person.h"

#include <arborium/qt/KsQt.h>
#include <dialog/Stage.h>

#include <MessageGuard.h>

namespace {

class MessageDialog : public testing::Test {
protected:
    void SetUp() override { KsFormweave::init(); }
    void TearDown() override { KsFormweave::finish(); }
    static Seen show(KsMessageDialog* dialog, QMessageBox::StandardButton answer = QMessageBox::Ok)
    {
        Person person(answer);
        dialog->show();
        EXPECT_FALSE(QApplication::activeModalWidget());
        return person.seen;
    }
    static KsRef<KsMessageDialog> read(const std::string& text)
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        EXPECT_TRUE(root);
        return KsRef<KsMessageDialog>(root ? ksCast<KsMessageDialog>(root->getChild(0)) : nullptr);
    }
};

} // namespace

TEST_F(MessageDialog, hasItsDefaults)
{
    const KsRef<KsMessageDialog> dialog(new KsMessageDialog);
    EXPECT_TRUE(dialog->title.getValue().isEmpty());
    EXPECT_EQ(dialog->type, KsMessageDialog::MD_MESSAGE);
    EXPECT_EQ(KsMessageDialog::getLabelPixelSize("long text"), KbVec2i32(0, 0));
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(MessageDialog, eachTypeHasItsBox)
{
    const struct {
        KsMessageDialog::Type type;
        QMessageBox::Icon icon;
        int buttons;
    } boxes[] = {{KsMessageDialog::MD_ERROR, QMessageBox::Critical, 1024},
                 {KsMessageDialog::MD_INFORMATION, QMessageBox::Information, 1024},
                 {KsMessageDialog::MD_MESSAGE, QMessageBox::NoIcon, 1024},
                 {KsMessageDialog::MD_QUESTION, QMessageBox::Question, 0x14000},
                 {KsMessageDialog::MD_WARNING, QMessageBox::Warning, 1024}};
    for (const auto& box : boxes) {
        const KsRef<KsMessageDialog> dialog(new KsMessageDialog);
        dialog->label = "The text";
        dialog->title = "The title";
        dialog->type = box.type;
        const bool question = box.type == KsMessageDialog::MD_QUESTION;
        const Seen seen = show(dialog.get(), question ? QMessageBox::No : QMessageBox::Ok);
        EXPECT_TRUE(seen.shown);
        EXPECT_EQ(seen.caption, "The title");
        EXPECT_EQ(seen.text, "The text");
        EXPECT_EQ(seen.icon, box.icon);
        EXPECT_EQ(static_cast<int>(seen.buttons), box.buttons);
        EXPECT_EQ(seen.format, Qt::PlainText);
    }
}

TEST_F(MessageDialog, aMessageShowsTheProgramsIcon)
{
    QPixmap picture(32, 32);
    picture.fill(Qt::red);
    QApplication::setWindowIcon(QIcon(picture));
    const KsRef<KsMessageDialog> dialog(new KsMessageDialog);
    EXPECT_TRUE(show(dialog.get()).hasPixmap);
    QApplication::setWindowIcon(QIcon());
}

TEST_F(MessageDialog, theConstructorWithATextReturnsWhenTheBoxIsClosed)
{
    Person person(QMessageBox::Yes);
    bool constructed = false;
    person.meanwhile = [&] { EXPECT_FALSE(constructed); };
    const KsRef<KsMessageDialog> dialog(
        new KsMessageDialog("Sure?", "Question", KsMessageDialog::MD_QUESTION));
    constructed = true;
    EXPECT_TRUE(person.seen.shown);
    EXPECT_EQ(person.seen.text, "Sure?");
    EXPECT_EQ(dialog->label.getValue(), "Sure?");
    EXPECT_EQ(dialog->title.getValue(), "Question");
    EXPECT_EQ(dialog->type, KsMessageDialog::MD_QUESTION);
}

TEST_F(MessageDialog, ofAFileShowsNothingUntilItIsAsked)
{
    const auto dialog =
        read("MessageDialog { type MD_QUESTION title \"T\" label \"L\" auditorID \"m\" }");
    ASSERT_TRUE(dialog);
    QApplication::processEvents();
    EXPECT_FALSE(QApplication::activeModalWidget());
    EXPECT_EQ(show(dialog.get(), QMessageBox::Yes).caption, "T");
    EXPECT_EQ(show(dialog.get(), QMessageBox::No).text, "L") << "as often as it is asked";
}

TEST_F(MessageDialog, aWorkingOneReturnsAtOnce)
{
    const KsRef<KsMessageDialog> dialog(new KsMessageDialog);
    dialog->type = KsMessageDialog::MD_WORKING;
    dialog->show();
    dialog->createWorkingMessageDialog();
    dialog->close();
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(MessageDialog, aTypeThatThereIsNotShowsNothing)
{
    const KsRef<KsMessageDialog> dialog(new KsMessageDialog);
    dialog->type = KsMessageDialog::MD_WORKING;
    ExpectedMessages messages("KsSFEnum::setValue", "is no value of Type", 2);
    for (int type : {6, -1}) {
        dialog->type.setValue(type);
        dialog->show();
        EXPECT_FALSE(QApplication::activeModalWidget());
    }
}

TEST_F(MessageDialog, textsOfAnyScriptAndLengthAreShownAsTheyAre)
{
    const KsRef<KsMessageDialog> dialog(new KsMessageDialog);
    dialog->label = u"<b>bold?</b> <img src='file:///x'> \u0416\u4e2d\u6587 \U0001F600\nsecond";
    dialog->title = u"\u00e9\u0416";
    Seen seen = show(dialog.get());
    EXPECT_EQ(seen.text, QString::fromUtf16(
                             u"<b>bold?</b> <img src='file:///x'> \u0416\u4e2d\u6587 \U0001F600\n"
                             u"second"));
    EXPECT_EQ(seen.caption, QString::fromUtf16(u"\u00e9\u0416"));
    dialog->label = KbString(std::string(200000, 'w'));
    seen = show(dialog.get());
    EXPECT_FALSE(seen.text.isEmpty());
    EXPECT_LT(seen.text.size(), 200000) << "nobody reads all that";
}

TEST_F(MessageDialog, standsBeforeTheProgramsMainWidget)
{
    auto* widget = new QWidget;
    KsQt::setTopLevelWidget(widget);
    const KsRef<KsMessageDialog> dialog(new KsMessageDialog);
    EXPECT_EQ(show(dialog.get()).parent, widget);
    // The main widget may go while the box is open.
    QTimer::singleShot(20, [widget] { delete widget; });
    dialog->show();
    EXPECT_FALSE(QApplication::activeModalWidget());
    EXPECT_EQ(show(dialog.get()).parent, nullptr);
}

TEST_F(MessageDialog, mayGoWhileItsBoxIsOpen)
{
    KsRef<KsMessageDialog> dialog(new KsMessageDialog);
    KsMessageDialog* shown = dialog.get();
    Person person(QMessageBox::Ok);
    person.meanwhile = [&] { dialog.reset(); };
    shown->show();
    EXPECT_TRUE(person.seen.shown);
}

TEST_F(MessageDialog, isDeletedByDestroy)
{
    auto* dialog = new KsMessageDialog;
    dialog->setName("nameOfTheBox");
    dialog->destroy(); // the guard of leaks sees if it is not
    EXPECT_FALSE(KsNode::getByName("nameOfTheBox"));
}

TEST_F(MessageDialog, hasNothingInAScene)
{
    const auto dialog = read("MessageDialog { label \"L\" }");
    KsGetBoundingBoxAction action(KbViewportRegion(100, 100));
    action.apply(dialog.get());
    EXPECT_TRUE(action.getBoundingBox().isEmpty());
}
