// Room for an application's own widget.

#include <dialog/Stage.h>

#include <QPushButton>

namespace {

const char* const form =
    "TopLevelDialog { label \"Form\" DialogCheckBox { label \"Box\" } "
    "DialogCustom { auditorID \"c\" width 120 height 60 minWidth 30 maxWidth 400 } }";

class Shown : public Stage {
public:
    explicit Shown(Road road = Both, const char* text = form)
        : Stage(text, road), custom(find<KsDialogCustom>("c"))
    {}
    QFrame* host() const { return qobject_cast<QFrame*>(custom->getWidget()); }

    KsDialogCustom* custom;
};

} // namespace

TEST(Custom, isAnEmptyFrameWithALayoutOfItsOwn)
{
    Shown shown(Stage::Window);
    ASSERT_TRUE(shown.host());
    EXPECT_TRUE(shown.host()->isVisible());
    EXPECT_EQ(shown.host()->minimumSize(), QSize(120, 60));
    EXPECT_EQ(shown.host()->maximumWidth(), 400);
    EXPECT_EQ(shown.host()->maximumHeight(), 32767);
    auto* layout = qobject_cast<QHBoxLayout*>(shown.host()->layout());
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->objectName(), "LMNKsDialogQCustomLayout");
    EXPECT_EQ(layout->contentsMargins(), QMargins());
    EXPECT_EQ(layout->spacing(), 0);
    EXPECT_EQ(shown.custom->getLayout(), layout);
    EXPECT_EQ(shown.host()->frameShape(), QFrame::NoFrame);
    shown.custom->edgeStyle = KsDialogComponent::SHADOW_OUT;
    EXPECT_EQ(shown.host()->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(shown.host()->frameShadow(), QFrame::Raised);
}

TEST(Custom, fixedSizesAreTheGreatestOnesToo)
{
    Shown shown(Stage::Window,
                "TopLevelDialog { DialogCustom { auditorID \"c\" width 120 height 60 "
                "fixedWidth TRUE fixedHeight TRUE } }");
    EXPECT_EQ(shown.host()->maximumSize(), QSize(120, 60));
}

TEST(Custom, keepsTheApplicationsWidgetOverAnyNumberOfBuilds)
{
    Shown shown;
    const QPointer<QFrame> host = shown.host();
    auto* button = new QPushButton("Mine", host);
    const QPointer<QWidget> watched = button;
    host->layout()->addWidget(button);
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, [&] { ++clicks; });
    for (int i = 0; i < 4; ++i) {
        shown.dialog->addChild(new KsDialogCheckBox);
        QApplication::processEvents();
        Stage::settle();
        ASSERT_EQ(shown.host(), host);
        ASSERT_TRUE(watched);
        EXPECT_TRUE(watched->isVisible());
        QTest::mouseClick(watched, Qt::LeftButton);
        EXPECT_EQ(clicks, i + 1);
    }
    // It stands in the window once, below the first check box.
    EXPECT_EQ(shown.dialog->getBaseWidget()->findChildren<QPushButton*>().size(), 1);
    auto* first = static_cast<KsDialogComponent*>(shown.dialog->getChild(0));
    auto* last = static_cast<KsDialogComponent*>(shown.dialog->getChild(2));
    const auto y = [](const QWidget* w) { return w->mapToGlobal(QPoint(0, 0)).y(); };
    EXPECT_LT(y(first->getWidget()), y(host));
    EXPECT_LT(y(host), y(last->getWidget()));
}

TEST(Custom, builtForASceneItHasItsFrameAllTheSame)
{
    Shown shown(Stage::Scene);
    ASSERT_TRUE(shown.host());
    EXPECT_FALSE(shown.host()->isVisible());
    EXPECT_FALSE(shown.host()->parentWidget());
    EXPECT_TRUE(shown.custom->isBuilt3D());
    const QPointer<QFrame> host = shown.host();
    const QPointer<QPushButton> button = new QPushButton(host);
    host->layout()->addWidget(button);
    shown.draw();
    EXPECT_EQ(shown.host(), host);
    // The frame joins a window that is made later.
    shown.dialog->buildDialog();
    shown.dialog->show();
    QApplication::processEvents();
    EXPECT_EQ(shown.host(), host);
    EXPECT_EQ(host->window(), shown.dialog->getBaseWidget());
    EXPECT_TRUE(button->isVisible());
    delete shown.dialog->getBaseWidget();
}

TEST(Custom, aFrameThatNeverJoinedAWindowGoesWithItsNode)
{
    QPointer<QFrame> host;
    {
        Shown shown(Stage::Scene);
        host = shown.host();
        EXPECT_TRUE(host);
    }
    EXPECT_FALSE(host);
}

TEST(Custom, takenOutOfTheTreeItsFrameGoesAndAnotherComes)
{
    Shown shown;
    const KsRef<KsDialogCustom> held(shown.custom);
    const QPointer<QFrame> host = shown.host();
    shown.dialog->removeChild(shown.dialog->findChild(held.get()));
    Stage::settle();
    EXPECT_FALSE(host);
    EXPECT_FALSE(shown.host());
    shown.dialog->addChild(held.get());
    QApplication::processEvents();
    ASSERT_TRUE(shown.host());
    EXPECT_TRUE(shown.host()->isVisible());
}

TEST(Custom, followsEnable)
{
    Shown shown;
    auto* button = new QPushButton(shown.host());
    shown.custom->enable = false;
    EXPECT_FALSE(button->isEnabled());
    shown.dialog->addChild(new KsDialogCheckBox);
    EXPECT_FALSE(button->isEnabled());
    shown.custom->enable = true;
    EXPECT_TRUE(button->isEnabled());
}
