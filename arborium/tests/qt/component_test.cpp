#include <arborium/qt/KsQtComponent.h>

#include <gtest/gtest.h>

#include <QtWidgets/QtWidgets>

#include <memory>

namespace {

class Box : public KsQtComponent {
public:
    explicit Box(QWidget* parent = nullptr, const char* name = nullptr)
        : KsQtComponent(parent, name)
    {}
    void build(QWidget* widget) { setBaseWidget(widget); }
    int realized = 0;

protected:
    void afterRealizeHook() override { ++realized; }
    const char* getDefaultWidgetName() const override { return "Box"; }
    const char* getDefaultTitle() const override { return "A box"; }
    const char* getDefaultIconTitle() const override { return "A box icon"; }
};

} // namespace

// shows: KsQtComponent::getWidget, KsQtComponent::setTitle, KsQtComponent::getTitle, KsQtComponent::setIconTitle,
// KsQtComponent::getIconTitle, KsQtComponent::getDefaultWidgetName, KsQtComponent::getDefaultTitle,
// KsQtComponent::getDefaultIconTitle
TEST(QtComponent, namesItsWidgetAndItsWindow)
{
    Box box;
    EXPECT_EQ(box.getWidget(), nullptr);
    box.show();
    EXPECT_FALSE(box.isVisible());
    box.build(new QWidget);
    EXPECT_EQ(box.getWidget()->objectName(), "Box");
    EXPECT_EQ(box.getWidget()->windowTitle(), "A box");
    EXPECT_EQ(box.getIconTitle(), "A box icon");
    EXPECT_EQ(box.getParentWidget(), nullptr);
    EXPECT_EQ(box.getTitle(), "A box");
    box.setIconTitle("Small");
    EXPECT_EQ(box.getWidget()->windowIconText(), "Small");
    box.setTitle("Mine");
    EXPECT_EQ(box.getTitle(), "Mine");
    EXPECT_EQ(box.getWidget()->windowTitle(), "Mine");
    box.setTitle(QString());
    EXPECT_EQ(box.getWidget()->windowTitle(), "A box");

    Box named(nullptr, "given");
    named.build(new QWidget);
    EXPECT_EQ(named.getWidget()->objectName(), "given");
}

// shows: KsQtComponent::show, KsQtComponent::hide, KsQtComponent::isVisible,
// KsQtComponent::afterRealizeHook
TEST(QtComponent, tellsOnceThatItsWidgetIsThere)
{
    Box box;
    box.build(new QWidget);
    EXPECT_EQ(box.realized, 0);
    box.show();
    EXPECT_TRUE(box.isVisible());
    box.hide();
    EXPECT_FALSE(box.isVisible());
    box.show();
    EXPECT_EQ(box.realized, 1);
    box.build(new QWidget);
    box.show();
    EXPECT_EQ(box.realized, 2);
}

// shows: KsQtComponent::getDefaultWidgetName, KsQtComponent::getDefaultTitle,
// KsQtComponent::getDefaultIconTitle
TEST(QtComponent, ofAClassThatSaysNothingHasPlainNames)
{
    class Plain : public KsQtComponent {
    public:
        Plain() { setBaseWidget(new QWidget); }
    };
    const Plain plain;
    EXPECT_EQ(plain.getWidget()->objectName(), "KsQtComponent");
    EXPECT_EQ(plain.getTitle(), "Component");
    EXPECT_EQ(plain.getIconTitle(), "Component");
    EXPECT_EQ(plain.getWidget()->windowTitle(), "Component");
}

// shows: KsQtComponent::setFullScreen, KsQtComponent::isFullScreen
TEST(QtComponent, remembersThatItCoversTheScreen)
{
    Box box;
    box.setFullScreen(true);
    EXPECT_TRUE(box.isFullScreen());
    box.build(new QWidget);
    box.show();
    EXPECT_TRUE(box.getWidget()->isFullScreen());
    box.setFullScreen(false);
    EXPECT_FALSE(box.isFullScreen());
    EXPECT_FALSE(box.getWidget()->isFullScreen());
}

// shows: KsQtComponent, KsQtComponent::setBaseWidget, KsQtComponent::getParentWidget
TEST(QtComponent, widgetAndComponentDieInAnyOrder)
{
    auto box = std::make_unique<Box>();
    QPointer<QWidget> widget(new QWidget);
    box->build(widget);
    box.reset();
    EXPECT_FALSE(widget);

    QWidget window;
    auto* inner = new Box(&window);
    EXPECT_EQ(inner->getParentWidget(), &window);
    widget = new QWidget(&window);
    inner->build(widget);
    delete widget.data();
    EXPECT_EQ(inner->getWidget(), nullptr);
    inner->show();
}
