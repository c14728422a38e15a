#include "MessageGuard.h"

#include <arborium/base/KsPreferences.h>
#include <arborium/qt/KsQtBasicSlider.h>
#include <arborium/render/KsGL.h>
#include <arborium/render/KsGLContext.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace {

class Slider : public KsQtBasicSlider {
public:
    explicit Slider(QWidget* parent, int type = 7) : KsQtBasicSlider(parent, type)
    {
        getNormalWindow()->resize(113, 24);
        addValueChangedCallback(changed, this);
        addFinishCallback(finished, this);
    }
    using KsQtBasicSlider::getBarRectangle;
    using KsQtBasicSlider::getCursorRectangle;
    using KsQtBasicSlider::Rectangle;

    static void changed(void* data, float value)
    {
        static_cast<Slider*>(data)->moves.push_back(value);
    }
    static void finished(void* data, float value)
    {
        static_cast<Slider*>(data)->ends.push_back(value);
    }
    QPoint tip() const
    {
        const Rectangle& c = getCursorRectangle();
        return {(c.x0 + c.x1) / 2, getNormalWindow()->height() - 1 - c.y0 - 2};
    }
    // A place on the bar that shows this value.
    QPoint at(float value) const
    {
        const Rectangle& b = getBarRectangle();
        return {b.x0 + qRound(value * float(b.x1 - b.x0)), getNormalWindow()->height() - 1 - b.y1};
    }

    std::vector<float> moves, ends;

protected:
    void paintGraphic() override
    {
        const Rectangle& b = getBarRectangle();
        KsGL::color3f(1, 0, 0);
        KsGL::rects(b.x0, b.y0, static_cast<std::int16_t>(b.x1 + 1),
                    static_cast<std::int16_t>(b.y1 + 1));
    }
};

class BasicSlider : public testing::Test {
protected:
    BasicSlider() { window.resize(200, 100); }
    QWidget window;
};

void drag(QWidget* widget, const QPoint& from, const QPoint& to, int steps = 5)
{
    QTest::mousePress(widget, Qt::LeftButton, {}, from);
    for (int i = 1; i <= steps; ++i) {
        const QPoint p = from + (to - from) * i / steps;
        QMouseEvent move(QEvent::MouseMove, p, Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(widget, &move);
    }
    QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
}

// A bar in three bands and a gradient, a triangle, lines: what controls draw.
QImage drawing(int width, int height, float scale, bool& byGL)
{
    const KbColor grey(0.5f, 0.5f, 0.5f);
    KsGL::Target target(width, height, scale, &grey);
    byGL = target.usesGL();
    const float colors[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (int row = 0; row < 2; ++row) {
        KsGL::pushAttrib(KsGL::LIGHTING_BIT);
        KsGL::shadeModel(row ? KsGL::SMOOTH : KsGL::FLAT);
        KsGL::begin(KsGL::QUAD_STRIP);
        for (int i = row ? 0 : -1; i < 3; ++i) {
            KsGL::color3fv(colors[std::max(i, 0)]);
            const auto x = static_cast<std::int16_t>(2 + (row ? 15 : 10) * (row ? i : i + 1));
            KsGL::vertex2s(x, static_cast<std::int16_t>(2 + 10 * row));
            KsGL::vertex2s(x, static_cast<std::int16_t>(9 + 10 * row));
        }
        KsGL::end();
        KsGL::popAttrib();
    }
    KsGL::color3ub(0xAA, 0xAA, 0xAA);
    KsGL::begin(KsGL::POLYGON);
    KsGL::vertex2f(40, 2);
    KsGL::vertex2f(46, 14);
    KsGL::vertex2f(52, 2);
    KsGL::end();
    KsGL::begin(KsGL::LINES);
    KsGL::color3ub(0, 0, 0);
    KsGL::vertex2s(40, 2);
    KsGL::vertex2s(52, 2);
    const std::int16_t corner[] = {56, 2};
    KsGL::vertex2sv(corner);
    KsGL::vertex2s(56, 12);
    KsGL::end();
    KsGL::color3f(1, 1, 0);
    KsGL::rects(58, 2, 60, 4);
    KsGL::flush();
    std::vector<std::uint32_t> rgb;
    target.finish(rgb);
    return QImage(reinterpret_cast<const uchar*>(rgb.data()), target.getWidth(), target.getHeight(),
                  4 * target.getWidth(), QImage::Format_RGB32)
        .copy();
}

// shows: KsGL::begin, KsGL::end, KsGL::color3f, KsGL::color3fv, KsGL::color3ub, KsGL::vertex2f,
// KsGL::vertex2s, KsGL::vertex2sv, KsGL::rects, KsGL::shadeModel, KsGL::flush, KsGL::Target,
// KsGL::Target::finish
TEST(ImmediateMode, putsWholeNumbersOnWholePixels)
{
    bool byGL = false;
    const QImage image = drawing(64, 24, 1, byGL);
    const auto at = [&](int x, int y) { return image.pixelColor(x, 23 - y); };
    EXPECT_EQ(at(1, 5).red(), 128);
    EXPECT_EQ(at(2, 5), QColor(255, 0, 0));
    EXPECT_EQ(at(11, 5), QColor(255, 0, 0));
    EXPECT_EQ(at(12, 5), QColor(0, 255, 0));
    EXPECT_EQ(at(31, 2), QColor(0, 0, 255));
    EXPECT_EQ(at(31, 8), QColor(0, 0, 255));
    EXPECT_EQ(at(31, 9).red(), 128) << "the upper end is outside";
    EXPECT_EQ(at(32, 5).red(), 128);
    EXPECT_GT(at(9, 15).red(), 100);
    EXPECT_GT(at(9, 15).green(), 100);
    EXPECT_EQ(at(46, 6), QColor(0xAA, 0xAA, 0xAA));
    EXPECT_EQ(at(45, 2), QColor(0, 0, 0));
    EXPECT_EQ(at(56, 7), QColor(0, 0, 0));
    EXPECT_EQ(at(59, 3), QColor(255, 255, 0));
    EXPECT_EQ(at(60, 3).red(), 128);
}

class ByRoad {
public:
    explicit ByRoad(KsGL::Road road) { KsGL::setRoad(road); }
    ~ByRoad() { KsGL::setRoad(KsGL::BEST); }
};

// shows: KsGL::setRoad
TEST(ImmediateMode, looksTheSameByRasterAsByOpenGL)
{
    for (const float scale : {1.0f, 1.5f, 2.0f, 3.0f}) {
        bool byGL = false, raster = false;
        QImage first, second;
        {
            const ByRoad road(KsGL::OPENGL);
            first = drawing(64, 24, scale, byGL);
        }
        if (!byGL) GTEST_SKIP() << "no OpenGL here";
        {
            const ByRoad road(KsGL::RASTER);
            second = drawing(64, 24, scale, raster);
        }
        ASSERT_FALSE(raster);
        ASSERT_EQ(first.size(), second.size());
        int different = 0;
        // Smooth edges are counted in quarters here, and finer there.
        const int tolerance = scale > 1 ? 50 : 8;
        for (int y = 0; y < first.height(); ++y)
            for (int x = 0; x < first.width(); ++x) {
                const QColor a = first.pixelColor(x, y), b = second.pixelColor(x, y);
                const int most =
                    std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                              std::abs(a.blue() - b.blue())});
                different += most > tolerance;
            }
        // Along slanted edges the rules leave a little freedom.
        EXPECT_LE(different, 12) << "scale " << scale;
    }
}

TEST(ImmediateMode, slantedLinesAreSmoothOnFineScreens)
{
    for (const KsGL::Road way : {KsGL::OPENGL, KsGL::RASTER}) {
        const ByRoad road(way);
        const KbColor white(1, 1, 1);
        KsGL::Target target(20, 20, 2, &white);
        KsGL::begin(KsGL::LINES);
        KsGL::color3ub(0, 0, 0);
        KsGL::vertex2s(2, 2);
        KsGL::vertex2s(12, 18);
        KsGL::end();
        std::vector<std::uint32_t> rgb;
        target.finish(rgb);
        // Each row holds the line in full, two pixels of the screen across its direction, and
        // shades of grey at its sides.
        int greys = 0;
        for (std::size_t y = 8; y < 32; ++y) {
            double dark = 0;
            for (std::size_t x = 0; x < 40; ++x) {
                const auto value = static_cast<double>(rgb[y * 40 + x] & 0xff) / 255;
                dark += 1 - value;
                greys += value > 0.1 && value < 0.9;
            }
            EXPECT_NEAR(dark, 2 * std::hypot(10, 16) / 16, 0.6) << "row " << y;
        }
        EXPECT_GT(greys, 24);
    }
}

TEST(ImmediateMode, numbersBeyondAllPicturesLeaveTheRestAsItIs)
{
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(),
                         std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity(),
                         3e38f,
                         -3e38f,
                         1e20f,
                         7};
    for (const float scale : {1.0f, 2.0f, 16.0f}) {
        const ByRoad road(KsGL::RASTER);
        KsGL::Target target(20, 20, scale);
        for (const float a : odd)
            for (const float b : odd)
                for (const float c : odd)
                    for (const auto primitive : {KsGL::LINES, KsGL::QUAD_STRIP, KsGL::POLYGON}) {
                        KsGL::begin(primitive);
                        KsGL::color3f(a, b, c);
                        for (const auto& at : {std::pair(a, b), std::pair(b, c), std::pair(c, a),
                                               std::pair(7.0f, a), std::pair(b, 7.0f)})
                            KsGL::vertex2f(at.first, at.second);
                        KsGL::end();
                    }
        KsGL::color3f(0, 1, 0);
        KsGL::rects(0, 0, 20, 20);
        std::vector<std::uint32_t> argb;
        target.finish(argb);
        for (const std::uint32_t word : argb) ASSERT_EQ(word, 0xff00ff00u);
    }
}

TEST(ImmediateMode, whatIsHalfCoveredIsHalfTransparent)
{
    for (const KsGL::Road way : {KsGL::OPENGL, KsGL::RASTER}) {
        const ByRoad road(way);
        KsGL::Target target(12, 12, 2);
        KsGL::color3f(1, 0, 0);
        KsGL::begin(KsGL::POLYGON);
        KsGL::vertex2s(1, 1);
        KsGL::vertex2s(11, 1);
        KsGL::vertex2s(11, 11);
        KsGL::end();
        std::vector<std::uint32_t> argb;
        target.finish(argb);
        int halves = 0;
        for (const std::uint32_t word : argb) {
            EXPECT_EQ(word >> 24, word >> 16 & 0xff) << "multiplied by the opacity";
            EXPECT_EQ(word & 0xffff, 0u);
            halves += (word >> 24) > 100 && (word >> 24) < 160;
        }
        EXPECT_GE(halves, 18) << "along the diagonal";
        EXPECT_EQ(argb[0], 0u);
    }
}

// shows: KsGL::Target::usesGL, KsGL::setRoad
TEST(ImmediateMode, smallPicturesDoNotAskTheContext)
{
    bool byGL = true;
    drawing(64, 24, 1, byGL);
    EXPECT_FALSE(byGL);
    drawing(1000, 400, 1, byGL);
    const ByRoad road(KsGL::OPENGL);
    bool available = false;
    drawing(64, 24, 1, available);
    EXPECT_EQ(byGL, available);
    EXPECT_EQ(available, KsGLContext::isAvailable());
}

// shows: KsGL::pushAttrib, KsGL::popAttrib, KsGL::shadeModel
TEST(ImmediateMode, theShadeModelIsBroughtBackIfItWasAskedFor)
{
    for (const KsGL::Road way : {KsGL::OPENGL, KsGL::RASTER}) {
        const ByRoad road(way);
        for (const unsigned attributes : {0u, static_cast<unsigned>(KsGL::LIGHTING_BIT)}) {
            KsGL::Target target(21, 3, 1);
            KsGL::pushAttrib(attributes);
            KsGL::shadeModel(KsGL::FLAT);
            KsGL::popAttrib();
            KsGL::begin(KsGL::QUAD_STRIP);
            for (const std::int16_t x : {0, 21}) {
                KsGL::color3f(x ? 1.0f : 0.0f, 0, 1);
                KsGL::vertex2s(x, 0);
                KsGL::vertex2s(x, 3);
            }
            KsGL::end();
            std::vector<std::uint32_t> argb;
            target.finish(argb);
            const int red = static_cast<int>(argb[10] >> 16 & 0xff);
            EXPECT_NEAR(red, attributes ? 128 : 255, 8) << "flat: the colour of the last corners";
        }
    }
}

TEST(ImmediateMode, callsOutsideOfATargetDoNothing)
{
    KsGL::end();
    KsGL::popAttrib();
    KsGL::begin(KsGL::LINES);
    KsGL::color3fv(nullptr);
    KsGL::vertex2sv(nullptr);
    KsGL::vertex2f(1, 2);
    KsGL::end();
    const KbColor white(1, 1, 1);
    const KsGL::Target outer(4, 4, 1);
    KsGL::Target inner(4, 4, 1, &white);
    std::vector<std::uint32_t> argb;
    inner.finish(argb);
    EXPECT_EQ(argb, std::vector<std::uint32_t>(16, 0)) << "targets are not nested";
}

// shows: KsQtBasicSlider::getBarRectangle, KsQtBasicSlider::getCursorRectangle
TEST_F(BasicSlider, tellsWhereItsBarAndItsCursorAre)
{
    Slider slider(&window);
    window.show();
    const auto corners = [](const Slider::Rectangle& r) {
        return std::vector<int>{r.x0, r.y0, r.x1, r.y1};
    };
    EXPECT_EQ(corners(slider.getBarRectangle()), (std::vector<int>{6, 10, 106, 19}));
    EXPECT_EQ(corners(slider.getCursorRectangle()), (std::vector<int>{0, 4, 12, 14}));
    slider.setValue(0.25f);
    EXPECT_EQ(corners(slider.getCursorRectangle()), (std::vector<int>{25, 4, 37, 14}));
}

TEST_F(BasicSlider, takesItsCursorAlongAndSaysSo)
{
    Slider slider(&window);
    window.show();
    drag(slider.getNormalWindow(), slider.tip(), slider.tip() + QPoint(50, 0));
    EXPECT_NEAR(slider.getValue(), 0.5f, 0.01f);
    EXPECT_EQ(slider.moves.size(), 5u);
    ASSERT_EQ(slider.ends.size(), 1u);
    EXPECT_EQ(slider.ends[0], slider.getValue());
}

TEST_F(BasicSlider, jumpsToWhereItIsPressedAndGoesOnFromThere)
{
    Slider slider(&window);
    window.show();
    drag(slider.getNormalWindow(), slider.at(0.75f), slider.at(1.0f) + QPoint(40, 0));
    ASSERT_FALSE(slider.moves.empty());
    EXPECT_NEAR(slider.moves.front(), 0.75f, 0.01f);
    EXPECT_EQ(slider.getValue(), 1) << "the end stops it";
    EXPECT_EQ(slider.ends, std::vector<float>{1.0f});
}

// shows: KsQtBasicSlider::takeDragFrom
TEST_F(BasicSlider, takesADragOverFromTheOneThatItReplaces)
{
    Slider earlier(&window), later(&window);
    window.show();
    QTest::mousePress(earlier.getNormalWindow(), Qt::LeftButton, {}, earlier.tip() + QPoint(2, 0));
    later.takeDragFrom(earlier);
    EXPECT_EQ(QWidget::mouseGrabber(), later.getNormalWindow());
    QMouseEvent move(QEvent::MouseMove, later.tip() + QPoint(52, 0), Qt::NoButton, Qt::LeftButton,
                     {});
    QApplication::sendEvent(later.getNormalWindow(), &move);
    EXPECT_NEAR(later.getValue(), 0.5f, 0.01f) << "held where it was taken";
    QTest::mouseRelease(later.getNormalWindow(), Qt::LeftButton, {}, later.tip());
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
    EXPECT_EQ(later.ends.size(), 1u);
    EXPECT_TRUE(earlier.moves.empty());
    // Nobody drags any more.
    earlier.takeDragFrom(later);
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
}

TEST_F(BasicSlider, aPressOnTheCursorMovesNothing)
{
    Slider slider(&window);
    window.show();
    slider.setValue(0.3f);
    QTest::mouseClick(slider.getNormalWindow(), Qt::LeftButton, {}, slider.tip() + QPoint(2, 0));
    EXPECT_EQ(slider.getValue(), 0.3f);
    EXPECT_TRUE(slider.moves.empty());
    EXPECT_EQ(slider.ends.size(), 1u);
}

TEST_F(BasicSlider, keysAndTheWheelMoveItWhileItHasTheFocus)
{
    Slider slider(&window);
    window.show();
    QWidget* widget = slider.getNormalWindow();
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_End);
    EXPECT_EQ(slider.getValue(), 1);
    QTest::keyClick(widget, Qt::Key_PageDown);
    EXPECT_NEAR(slider.getValue(), 0.9f, 1e-6f);
    QTest::keyClick(widget, Qt::Key_Left);
    EXPECT_NEAR(slider.getValue(), 0.89f, 1e-6f);
    QTest::keyClick(widget, Qt::Key_Home);
    QTest::keyClick(widget, Qt::Key_Home);
    EXPECT_EQ(slider.moves.size(), 4u) << "nothing is said where nothing moved";
    EXPECT_EQ(slider.getValue(), 0);
}

// shows: KsQtBasicSlider
TEST_F(BasicSlider, aTypeLeavesOutWhatTheUserCannotDo)
{
    Slider slider(&window, KsQtBasicSlider::DRAG);
    window.show();
    QTest::mouseClick(slider.getNormalWindow(), Qt::LeftButton, {}, slider.at(0.8f));
    EXPECT_EQ(slider.getValue(), 0) << "it does not jump";
    QTest::keyClick(slider.getNormalWindow(), Qt::Key_End);
    EXPECT_EQ(slider.getValue(), 0);
}

// shows: KsQtBasicSlider::getValue, KsQtBasicSlider::setValue
TEST_F(BasicSlider, aValueFromTheProgramCallsNobodyAndMayLieOutside)
{
    Slider slider(&window);
    slider.setValue(1.5f);
    EXPECT_EQ(slider.getValue(), 1.5f);
    EXPECT_EQ(slider.tip().x(), slider.at(1).x());
    slider.setValue(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(slider.getValue(), 0);
    EXPECT_TRUE(slider.moves.empty());
    EXPECT_TRUE(slider.ends.empty());

    // Once the user takes it, it stands where it is shown.
    window.show();
    slider.setValue(1.5f);
    QTest::mouseClick(slider.getNormalWindow(), Qt::LeftButton, {}, slider.tip());
    EXPECT_TRUE(slider.moves.empty());
    EXPECT_EQ(slider.ends, std::vector<float>{1});
    EXPECT_EQ(slider.getValue(), 1);
}

// shows: KsQtBasicSlider::addFinishCallback, KsQtBasicSlider::removeFinishCallback,
// KsQtBasicSlider::addValueChangedCallback, KsQtBasicSlider::removeValueChangedCallback
TEST_F(BasicSlider, aCallbackIsHeldOnceAndMayBeTakenOut)
{
    Slider slider(&window);
    window.show();
    slider.addFinishCallback(Slider::finished, &slider);
    QTest::mouseClick(slider.getNormalWindow(), Qt::LeftButton, {}, slider.at(0.5f));
    EXPECT_EQ(slider.ends.size(), 1u);
    slider.removeFinishCallback(Slider::finished, &slider);
    QTest::mouseClick(slider.getNormalWindow(), Qt::LeftButton, {}, slider.at(0.2f));
    EXPECT_EQ(slider.ends.size(), 1u);
    EXPECT_EQ(slider.moves.size(), 2u);
    slider.removeValueChangedCallback(Slider::changed, nullptr); // another one
    slider.removeValueChangedCallback(Slider::changed, &slider);
    slider.addValueChangedCallback(nullptr, &slider);
    QTest::mouseClick(slider.getNormalWindow(), Qt::LeftButton, {}, slider.at(0.7f));
    EXPECT_EQ(slider.moves.size(), 2u);
    EXPECT_NEAR(slider.getValue(), 0.7f, 0.01f);
}

TEST_F(BasicSlider, maySetOutToDieInItsCallback)
{
    auto* slider = new Slider(&window);
    window.show();
    slider->removeValueChangedCallback(Slider::changed, slider);
    slider->addValueChangedCallback([](void* data, float) { delete static_cast<Slider*>(data); },
                                    slider);
    QPointer<QWidget> widget = slider->getNormalWindow();
    QTest::mousePress(widget, Qt::LeftButton, {}, slider->at(0.5f));
    EXPECT_FALSE(widget);
}

// shows: KsQtGLWidget::getNumPictures, KsQtGLWidget::paintGraphic
TEST_F(BasicSlider, aPictureIsMadeOnlyAfterAChange)
{
    Slider slider(&window);
    window.show();
    QApplication::processEvents();
    window.grab();
    const long made = slider.getNumPictures();
    window.grab();
    window.repaint();
    EXPECT_EQ(slider.getNumPictures(), made);
    slider.setValue(0.5f);
    slider.setValue(0.6f);
    window.grab();
    EXPECT_EQ(slider.getNumPictures(), made + 1);
}

// shows: KsQtGLWidget::getNormalWindow
TEST_F(BasicSlider, drawsOnWhatTheWindowIsFilledWith)
{
    QPalette palette = window.palette();
    palette.setColor(QPalette::Window, QColor(10, 200, 30));
    window.setPalette(palette);
    Slider slider(&window);
    window.show();
    const QImage image = slider.getNormalWindow()->grab().toImage();
    EXPECT_EQ(image.pixelColor(1, 1), QColor(10, 200, 30));
    EXPECT_EQ(image.pixelColor(slider.at(0.7f)), QColor(255, 0, 0));
}

TEST_F(BasicSlider, whatItStandsOnShowsThrough)
{
    struct Picture : QWidget {
        using QWidget::QWidget;
        void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::yellow); }
    } picture(&window);
    picture.resize(window.size());
    Slider slider(&picture);
    window.show();
    const QWidget* widget = slider.getNormalWindow();
    const QImage image = window.grab().toImage();
    EXPECT_EQ(image.pixelColor(widget->mapTo(&window, QPoint(1, 1))), QColor(Qt::yellow));
    EXPECT_EQ(image.pixelColor(widget->mapTo(&window, slider.at(0.7f))), QColor(255, 0, 0));
}

} // namespace
