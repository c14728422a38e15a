#include <arborium/qt/KsQt.h>
#include <arborium/qt/KsQtGLWidget.h>
#include <arborium/render/KsGL.h>
#include <arborium/render/KsGLContext.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

/// A widget that is green all over, with a white bar over it, and notes what it is asked for.
class Meadow : public KsQtGLWidget {
public:
    explicit Meadow(QWidget* parent) : KsQtGLWidget(parent)
    {
        setBaseWidget(buildWidget(parent));
        getNormalWindow()->resize(20, 10);
    }
    QColor seenAt(int x, int y) { return getNormalWindow()->grab().toImage().pixelColor(x, y); }

    std::string asked;
    bool usesKeys = false;

protected:
    void initGraphic() override { asked += "init "; }
    void paintGraphic() override
    {
        asked += "paint ";
        KsGL::color3f(0, 1, 0);
        KsGL::rects(0, 0, 100, 100);
    }
    void redrawOverlay(QPainter& painter) override { painter.fillRect(0, 0, 100, 2, Qt::white); }
    void sizeChanged(int width, int height) override
    {
        asked += std::to_string(width) + "x" + std::to_string(height) + " ";
    }
    bool processEvent(QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || !usesKeys) return false;
        asked += "key ";
        return true;
    }
};

class GLWidget : public testing::Test {
protected:
    QWidget window;
};

} // namespace

// shows: KsQtGLWidget, KsQtGLWidget::buildWidget, KsQtGLWidget::getNormalWindow,
// KsQtGLWidget::initGraphic, KsQtGLWidget::paintGraphic, KsQtGLWidget::redrawOverlay,
// KsQtGLWidget::sizeChanged, KsQtGLWidget::redraw
TEST_F(GLWidget, drawsItselfOnceAndItsOverlayEachTime)
{
    Meadow meadow(&window);
    window.show();
    EXPECT_EQ(meadow.seenAt(5, 5), QColor(0, 255, 0));
    EXPECT_EQ(meadow.seenAt(5, 1), QColor(255, 255, 255));
    EXPECT_EQ(meadow.asked, "20x10 init paint ");
    meadow.redraw();
    meadow.seenAt(0, 0);
    EXPECT_EQ(meadow.asked, "20x10 init paint paint ");
    meadow.getNormalWindow()->resize(30, 10);
    EXPECT_EQ(meadow.seenAt(25, 5), QColor(0, 255, 0));
    EXPECT_EQ(meadow.asked, "20x10 init paint paint 30x10 paint ");
}

// shows: KsQtGLWidget::processEvent
TEST_F(GLWidget, hearsTheEventsOfItsWindow)
{
    Meadow meadow(&window);
    window.show();
    QTest::keyClick(meadow.getNormalWindow(), Qt::Key_A);
    EXPECT_EQ(meadow.asked.find("key"), std::string::npos);
    meadow.usesKeys = true;
    QTest::keyClick(meadow.getNormalWindow(), Qt::Key_A);
    EXPECT_NE(meadow.asked.find("key "), std::string::npos);
    const std::string before = meadow.asked;
    meadow.getNormalWindow()->setEnabled(false);
    QTest::keyClick(meadow.getNormalWindow(), Qt::Key_A);
    EXPECT_EQ(meadow.asked, before);
}

// shows: KsQtGLWidget::bindNormalContext, KsQtGLWidget::makeNormalCurrent,
// KsQtGLWidget::unbindNormalContext, KsQtGLWidget::swapNormalBuffers,
// KsQtGLWidget::setDoubleBuffer, KsQtGLWidget::isDoubleBuffer
TEST_F(GLWidget, mayBeDrawnIntoBetweenItsPaintEvents)
{
    Meadow meadow(&window);
    window.show();
    EXPECT_TRUE(meadow.isDoubleBuffer());
    EXPECT_EQ(meadow.seenAt(5, 5), QColor(0, 255, 0));
    ASSERT_TRUE(meadow.makeNormalCurrent());
    EXPECT_FALSE(meadow.bindNormalContext()) << "is open already";
    KsGL::color3f(1, 0, 0);
    KsGL::rects(0, 0, 100, 100);
    meadow.unbindNormalContext();
    meadow.unbindNormalContext(); // is closed already
    meadow.swapNormalBuffers();
    EXPECT_EQ(meadow.seenAt(5, 5), QColor(255, 0, 0));
    meadow.setDoubleBuffer(false);
    EXPECT_FALSE(meadow.isDoubleBuffer());
    ASSERT_TRUE(meadow.bindNormalContext());
    KsGL::color3f(0, 0, 1);
    KsGL::rects(0, 0, 100, 100);
    meadow.unbindNormalContext();
    EXPECT_EQ(meadow.seenAt(5, 5), QColor(0, 0, 255));
    EXPECT_EQ(meadow.asked, "20x10 init paint ");
}

TEST_F(GLWidget, isReadyWhenItIsDrawnIntoBeforeItsFirstPaintEvent)
{
    Meadow meadow(&window);
    ASSERT_TRUE(meadow.bindNormalContext());
    meadow.unbindNormalContext();
    EXPECT_EQ(meadow.asked, "init ");
    ASSERT_TRUE(meadow.bindNormalContext());
    meadow.unbindNormalContext();
    window.show();
    meadow.redraw();
    meadow.seenAt(0, 0);
    EXPECT_EQ(meadow.asked, "init 20x10 paint ");
}

// shows: KsGL::Target::getWidth, KsGL::Target::getHeight
TEST(ImmediateMode, pictureHasThePixelsOfTheScreen)
{
    KsGL::Target target(10, 6, 1.5f);
    EXPECT_EQ(target.getWidth(), 15);
    EXPECT_EQ(target.getHeight(), 9);
    std::vector<std::uint32_t> argb;
    target.finish(argb);
    EXPECT_EQ(argb.size(), 15u * 9);
}

// shows: KsGLContext::isAvailable, KsGLContext::getVersion, KsGLContext::Current::operator bool
TEST(GLContext, tellsWhatItIs)
{
    ASSERT_TRUE(KsGLContext::isAvailable());
    EXPECT_GE(std::atof(KsGLContext::getVersion()), 2.1);
    const KsGLContext::Current current;
    EXPECT_TRUE(current);
}

// shows: KsQt::mainLoop, KsQt::exitMainLoop
TEST(QtBinding, theLoopEndsWithTheStatusThatItIsTold)
{
    QTimer::singleShot(0, [] { KsQt::exitMainLoop(7); });
    EXPECT_EQ(KsQt::mainLoop(), 7);
}
