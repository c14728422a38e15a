#include "MessageGuard.h"

#include <arborium/qt/KsQt.h>
#include <arborium/qt/KsQtGLWidget.h>
#include <arborium/render/KsGL.h>
#include <arborium/render/KsGLContext.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
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
    int overlays = 0;
    bool usesKeys = false;

protected:
    void initGraphic() override { asked += "init "; }
    void paintGraphic() override
    {
        asked += "paint ";
        KsGL::color3f(0, 1, 0);
        KsGL::rects(0, 0, 100, 100);
    }
    void redrawOverlay(QPainter& painter) override
    {
        ++overlays;
        painter.fillRect(0, 0, 100, 2, Qt::white);
    }
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

// shows: KsQtGLWidget::swapNormalBuffers, KsQtGLWidget::setDoubleBuffer
TEST_F(GLWidget, showsWhatWasDrawnAfterASwapOrWithoutASecondBufferAtOnce)
{
    Meadow meadow(&window);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    QApplication::processEvents();
    const auto drawAndCount = [&meadow](bool swap) {
        const int before = meadow.overlays;
        EXPECT_TRUE(meadow.bindNormalContext());
        meadow.unbindNormalContext();
        if (swap) meadow.swapNormalBuffers();
        QApplication::processEvents();
        return meadow.overlays - before;
    };
    EXPECT_EQ(drawAndCount(false), 0);
    EXPECT_EQ(drawAndCount(true), 1);
    meadow.setDoubleBuffer(false);
    EXPECT_EQ(drawAndCount(false), 1);
}

// shows: KsQtGLWidget::initGraphic, KsQtGLWidget::paintGraphic, KsQtGLWidget::redrawOverlay,
// KsQtGLWidget::sizeChanged, KsQtGLWidget::processEvent
TEST_F(GLWidget, ofAClassThatSaysNothingShowsAndUsesNothing)
{
    class Plain : public KsQtGLWidget {
    public:
        explicit Plain(QWidget* parent) : KsQtGLWidget(parent)
        {
            setBaseWidget(buildWidget(parent));
        }
    };
    struct Ground : QWidget {
        void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::yellow); }
        void keyPressEvent(QKeyEvent*) override { ++keys; }
        int keys = 0;
    } ground;
    Plain plain(&ground);
    plain.getNormalWindow()->resize(20, 10);
    ground.show();
    EXPECT_EQ(ground.grab().toImage().pixelColor(5, 5), QColor(Qt::yellow));
    EXPECT_EQ(plain.getNumPictures(), 1);
    QTest::keyClick(plain.getNormalWindow(), Qt::Key_A);
    EXPECT_EQ(ground.keys, 1) << "goes on to what it stands on";
}

// shows: KsQtGLWidget::bindNormalContext, KsQtGLWidget::makeNormalCurrent,
// KsQtGLWidget::unbindNormalContext, KsQtGLWidget::isDoubleBuffer
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
    const KsGL::Target least(0, -5, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(least.getWidth(), 1);
    EXPECT_EQ(least.getHeight(), 1);
}

// shows: KsGLContext::isAvailable, KsGLContext::getVersion, KsGLContext::Current::operator bool
TEST(GLContext, tellsWhatItIs)
{
    ASSERT_TRUE(KsGLContext::isAvailable());
    EXPECT_GE(std::atof(KsGLContext::getVersion()), 2.1);
    const KsGLContext::Current current;
    EXPECT_TRUE(current);
}

// shows: KsQt::init, KsQt::isInitialized, KsQt::finish
TEST(WithoutApplication, theLayerMakesOneIfItIsAskedTo)
{
    if (QCoreApplication::instance()) GTEST_SKIP() << "run by itself";
    {
        ExpectedMessages messages("KsQt::init", "There is no QApplication");
        messages.expect("KsQt::mainLoop", "There is no QApplication");
        EXPECT_FALSE(KsQt::init());
        EXPECT_EQ(KsQt::mainLoop(), 1);
        KsQt::exitMainLoop();
    }
    EXPECT_FALSE(KsQt::isInitialized());
    static int argc = 1;
    static char name[] = "program";
    static char* argv[] = {name, nullptr};
    ASSERT_TRUE(KsQt::init(argc, argv));
    ASSERT_TRUE(QCoreApplication::instance());
    EXPECT_TRUE(KsQt::isInitialized());
    const QCoreApplication* const application = QCoreApplication::instance();
    ASSERT_TRUE(KsQt::init(argc, argv));
    EXPECT_EQ(QCoreApplication::instance(), application) << "one is enough";
    KsQt::finish();
    EXPECT_TRUE(KsQt::isInitialized());
    KsQt::finish();
    EXPECT_FALSE(KsQt::isInitialized());
    KsQt::finish(); // without a start: nothing
    EXPECT_FALSE(KsQt::isInitialized());
}

// shows: KsQt::mainLoop, KsQt::exitMainLoop
TEST(QtBinding, theLoopEndsWithTheStatusThatItIsTold)
{
    QTimer::singleShot(0, [] { KsQt::exitMainLoop(7); });
    EXPECT_EQ(KsQt::mainLoop(), 7);
}
