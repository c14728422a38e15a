// A program without a QApplication. The main of the tests makes none for these.

#include "Elements.h"

#include <formweave/formweave.h>

#include <QCoreApplication>
#include <memory>
#include <optional>

namespace {

constexpr const char* text = "There is no QApplication";

/// With no application at all, or with one that has no windows.
class WithoutApplication : public testing::TestWithParam<bool> {
protected:
    void SetUp() override
    {
        if (QCoreApplication::instance()) GTEST_SKIP() << "run by itself only";
        if (GetParam()) application.emplace(argc, argv);
        KsFormweave::init();
        dialog = readNode<KsTopLevelDialog>(
            "TopLevelDialog { DialogCheckBox { auditorID \"a\" label \"Shadows\" } "
            "RowDialog { DialogPushButton { buttonLabel \"B\" } } "
            "MenuBar { MenuPopup { label \"M\" } } }");
        ASSERT_TRUE(dialog);
    }
    void TearDown() override
    {
        if (!dialog) return;
        dialog.reset();
        KsFormweave::finish();
    }

    KsRef<KsTopLevelDialog> dialog;

private:
    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    std::optional<QCoreApplication> application;
};

} // namespace

TEST_P(WithoutApplication, treesAreReadAndChangedAndWritten)
{
    EXPECT_NE(dialog->searchForAuditorId("a"), nullptr);
    dialog->addChild(new KsDialogCheckBox);
    EXPECT_EQ(dialog->getNumChildren(), 4);
    dialog->show();
    dialog->hide();
    EXPECT_NE(written(dialog.get()).find("Shadows"), std::string::npos);
}

TEST_P(WithoutApplication, aDialogSaysSoEachTimeItIsToBuildItsWindow)
{
    ExpectedMessages messages("KsTopLevelDialog::buildDialog", text, 2);
    for (int i = 0; i < 2; ++i) {
        dialog->buildDialog();
        dialog->show();
        EXPECT_EQ(dialog->getBaseWidget(), nullptr);
        EXPECT_FALSE(dialog->isBuilt2D());
    }
    dialog->updateChildren();
    EXPECT_FALSE(dialog->getChild(0)->isBuilt2D());
}

TEST_P(WithoutApplication, aSceneSaysSoOnceAndShowsNothing)
{
    ExpectedMessages messages("KsFormweave::getBoundingBox", text);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(measure(dialog.get()).isEmpty());
    EXPECT_FALSE(dialog->isBuilt3D());
    EXPECT_FALSE(dialog->getChild(0)->isBuilt3D());
    // The tree is as it was.
    EXPECT_EQ(dialog->getNumChildren(), 3);
    EXPECT_EQ(dialog->width, 0);
}

TEST_P(WithoutApplication, aMessageBoxAndALabelSayItToo)
{
    ExpectedMessages messages("KsMessageDialog::show", text);
    messages.expect("KsFormweave::getLabelPixelSize", text);
    const KsRef<KsMessageDialog> box(new KsMessageDialog);
    box->show();
    EXPECT_EQ(KsFormweave::getLabelPixelSize("label", nullptr), KbVec2i32(0, 0));
}

INSTANTIATE_TEST_SUITE_P(AtAll, WithoutApplication, testing::Values(false, true));
