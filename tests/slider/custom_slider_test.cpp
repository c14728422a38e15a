// The bar of a slider in a window, looked at pixel by pixel.

#include <arborium/render/KsGL.h>
#include <formweave/KsDialogCustomSlider.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>
#include <gtest/gtest.h>

#include <set>

namespace {

class Bar : public KsDialogCustomSlider {
public:
    explicit Bar(QWidget* parent) : KsDialogCustomSlider(parent)
    {
        getWidget()->resize(133, 24);
        picture(); // a widget that is not shown hears of its size when it is drawn
        setValue(1);
    }
    using KsDialogCustomSlider::getBarRectangle;
    using KsDialogCustomSlider::getCursorRectangle;

    QImage picture() { return getWidget()->grab().toImage().convertToFormat(QImage::Format_RGB32); }
    /// A place in the rectangle's own coordinates, y upward.
    QColor at(int x, int y) { return picture().pixelColor(x, getWidget()->height() - 1 - y); }
    /// On the bar's upper line, `part` of its width from its left end.
    QColor onBar(double part)
    {
        const auto& bar = getBarRectangle();
        return at(bar.x0 + static_cast<int>(part * (bar.x1 - bar.x0)), bar.y1);
    }
};

/// Both ways to draw: by the context of the process, and by raster.
class CustomSlider : public testing::TestWithParam<bool> {
protected:
    void SetUp() override { KsGL::setRoad(GetParam() ? KsGL::RASTER : KsGL::OPENGL); }
    void TearDown() override { KsGL::setRoad(KsGL::BEST); }
    QWidget window;
    Bar bar{&window};
};

void expectColor(const QColor& got, int red, int green, int blue, int tolerance = 2)
{
    EXPECT_NEAR(got.red(), red, tolerance);
    EXPECT_NEAR(got.green(), green, tolerance);
    EXPECT_NEAR(got.blue(), blue, tolerance);
}

const KbColor red(1, 0, 0), green(0, 1, 0), blue(0, 0, 1);

} // namespace

TEST_P(CustomSlider, isGreyAtFirst)
{
    for (const double part : {0.0, 0.5, 1.0}) expectColor(bar.onBar(part), 168, 168, 168);
}

TEST_P(CustomSlider, fillsItsRectangleAndNotMore)
{
    bar.setColors(&red, 1, 1);
    bar.setValue(1);
    const auto& r = bar.getBarRectangle();
    expectColor(bar.at(r.x0, r.y0), 255, 0, 0);
    expectColor(bar.at(r.x0, r.y1), 255, 0, 0);
    expectColor(bar.at(r.x1, r.y1), 255, 0, 0);
    const QColor background = bar.getWidget()->palette().color(QPalette::Window);
    EXPECT_EQ(bar.at(r.x0 - 1, r.y0), background);
    EXPECT_EQ(bar.at(r.x1 + 1, r.y1), background);
    EXPECT_EQ(bar.at(r.x0, r.y1 + 1), background);
    EXPECT_EQ(bar.at(r.x0, r.y0 - 1), background);
}

TEST_P(CustomSlider, oneColorIsFlatAndTheSameWhenDisabled)
{
    bar.setColors(&red, 1, 1);
    const QImage enabled = bar.picture();
    for (const double part : {0.0, 0.3, 0.8}) expectColor(bar.onBar(part), 255, 0, 0);
    bar.setEnable(0);
    EXPECT_EQ(bar.picture(), enabled);
}

TEST_P(CustomSlider, twoShadedColorsAreAGradientOverTheWholeWidth)
{
    const KbColor colors[] = {red, blue};
    bar.setColors(colors, 2, 1);
    expectColor(bar.onBar(0), 255, 0, 0, 4);
    expectColor(bar.onBar(0.25), 191, 0, 64, 4);
    expectColor(bar.onBar(0.5), 128, 0, 128, 4);
    expectColor(bar.onBar(1), 0, 0, 255, 4);
}

TEST_P(CustomSlider, threePlainColorsAreBandsOfEqualWidth)
{
    const KbColor colors[] = {red, green, blue};
    bar.setColors(colors, 3, 0);
    const auto& r = bar.getBarRectangle();
    const int band = (r.x1 - r.x0 + 1) / 3;
    int counts[3] = {};
    for (int x = r.x0; x <= r.x1; ++x) {
        const QColor c = bar.at(x, r.y1);
        counts[0] += c.red() == 255;
        counts[1] += c.green() == 255;
        counts[2] += c.blue() == 255;
    }
    for (const int count : counts) EXPECT_NEAR(count, band, 1);
    expectColor(bar.onBar(0.1), 255, 0, 0);
    expectColor(bar.onBar(0.5), 0, 255, 0);
    expectColor(bar.onBar(0.9), 0, 0, 255);
}

TEST_P(CustomSlider, severalColorsAreHalfAsBrightWhenDisabled)
{
    const KbColor colors[] = {red, KbColor(0.8f, 0.4f, 0.2f)};
    bar.setColors(colors, 2, 0);
    bar.setEnable(0);
    expectColor(bar.onBar(0.2), 128, 0, 0);
    expectColor(bar.onBar(0.8), 102, 51, 26);
    bar.setEnable(1);
    expectColor(bar.onBar(0.8), 204, 102, 51);
}

TEST_P(CustomSlider, oneColorAfterSeveralIsFlatAgainAndKeepsTheShadingForLater)
{
    const KbColor colors[] = {red, blue};
    bar.setColors(colors, 2, 1);
    bar.setColors(&green, 1, 0);
    for (const double part : {0.0, 0.5, 1.0}) expectColor(bar.onBar(part), 0, 255, 0);
    bar.setColors(colors, 2, 1);
    expectColor(bar.onBar(0.5), 128, 0, 128, 4);
}

TEST_P(CustomSlider, theCursorIsABevelledTriangle)
{
    bar.setValue(0.5f);
    const auto& c = bar.getCursorRectangle();
    const int middle = (c.x0 + c.x1) / 2;
    expectColor(bar.at(middle, (c.y0 + c.y1) / 2 - 1), 0xAA, 0xAA, 0xAA);
    // Dark on the outside of the left slope, light on its inside; the right slope in two greys.
    int darkest = 255, lightest = 0;
    for (int x = c.x0; x <= middle; ++x) {
        const int grey = bar.at(x, c.y0 + 4).green();
        darkest = std::min(darkest, grey);
        lightest = std::max(lightest, grey);
    }
    EXPECT_LT(darkest, 0x20);
    EXPECT_EQ(lightest, 0xFF);
    // Of the right slope what is on one line depends on how lines are drawn; over a few lines both
    // greys are there.
    int rightDarkest = 255;
    for (int y = c.y0 + 2; y < c.y1 - 2; ++y)
        for (int x = middle + 1; x <= c.x1; ++x)
            rightDarkest = std::min(rightDarkest, bar.at(x, y).green());
    EXPECT_NEAR(rightDarkest, 0x32, 4);
    EXPECT_NEAR(bar.at(middle, c.y0).green(), 0x32, 4);
}

TEST_P(CustomSlider, theCursorIsAsFineAsThePictureItIsPaintedInto)
{
    bar.setValue(0.5f);
    QImage fine(bar.getWidget()->size() * 2, QImage::Format_RGB32);
    fine.setDevicePixelRatio(2);
    bar.getWidget()->render(&fine);
    int differences = 0, greys = 0;
    for (int y = 0; y < fine.height(); y += 2)
        for (int x = 0; x < fine.width(); x += 2)
            differences += fine.pixel(x, y) != fine.pixel(x + 1, y);
    const auto& c = bar.getCursorRectangle();
    for (int x = 2 * c.x0; x < 2 * c.x1; ++x)
        greys += qRed(fine.pixel(x, fine.height() - 2 * (c.y0 + 5))) % 0x55 != 0;
    EXPECT_GT(differences, 8) << "no pixel is just drawn larger";
    EXPECT_GT(greys, 2) << "slanted edges are smooth";
    // And as before on the screen.
    expectColor(bar.at((c.x0 + c.x1) / 2, (c.y0 + c.y1) / 2 - 1), 0xAA, 0xAA, 0xAA);
}

TEST_P(CustomSlider, theCursorHasEachOfItsGreys)
{
    bar.setValue(0.5f);
    const auto& c = bar.getCursorRectangle();
    const int middle = (c.x0 + c.x1) / 2;
    std::set<int> left, right, base;
    for (int y = c.y0 + 2; y < c.y1; ++y) {
        for (int x = c.x0; x < middle; ++x) left.insert(bar.at(x, y).green());
        for (int x = middle + 1; x <= c.x1; ++x) right.insert(bar.at(x, y).green());
    }
    for (int x = c.x0 + 3; x < c.x1 - 3; ++x)
        for (int y = c.y0; y <= c.y0 + 1; ++y) base.insert(bar.at(x, y).green());
    for (const int grey : {0x00, 0xFF}) EXPECT_TRUE(left.count(grey)) << grey;
    for (const int grey : {0x32, 0x55}) EXPECT_TRUE(right.count(grey)) << grey;
    EXPECT_EQ(base, (std::set<int>{0x32, 0x80}));
}

TEST_P(CustomSlider, strangeColorsAreDrawnAsTheNearestThereAre)
{
    const KbColor strange[] = {KbColor(7, -3, std::nanf("")), KbColor(0.5f, 1e30f, -1e30f)};
    bar.setColors(strange, 2, 0);
    expectColor(bar.onBar(0.2), 255, 0, 0);
    expectColor(bar.onBar(0.8), 128, 255, 0);
    bar.setColors(nullptr, 5, 1);
    expectColor(bar.onBar(0.5), 168, 168, 168);
    bar.setColors(strange, 0, 1);
    expectColor(bar.onBar(0.5), 168, 168, 168);
}

TEST_P(CustomSlider, takesAHundredThousandColors)
{
    std::vector<KbColor> colors(100000, red);
    for (std::size_t i = colors.size() / 2; i < colors.size(); ++i) colors[i] = blue;
    for (const int shaded : {0, 1}) {
        bar.setColors(colors.data(), static_cast<int>(colors.size()), shaded);
        expectColor(bar.onBar(0.25), 255, 0, 0);
        expectColor(bar.onBar(0.75), 0, 0, 255);
    }
}

TEST_P(CustomSlider, hasNoPlaceForItsCursorAndDrawsAllTheSame)
{
    for (const int width : {1, 5, 12, 13}) {
        bar.getWidget()->setMinimumSize(1, 1);
        bar.getWidget()->resize(width, 3);
        const KbColor colors[] = {red, blue};
        bar.setColors(colors, 2, 1);
        EXPECT_EQ(bar.picture().width(), width);
    }
}

TEST_P(CustomSlider, buildsItsWidgetAnew)
{
    const QPointer<QWidget> earlier = bar.getWidget();
    QWidget* widget = bar.buildWidget(&window);
    EXPECT_EQ(bar.getWidget(), widget);
    EXPECT_NE(earlier, widget);
    widget->resize(133, 24);
    bar.picture();
    expectColor(bar.onBar(0.5), 168, 168, 168);
    QTest::keyClick(widget, Qt::Key_Home);
    EXPECT_EQ(bar.getValue(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(earlier);
}

INSTANTIATE_TEST_SUITE_P(Drawn, CustomSlider, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& way) {
                             return way.param ? "byRaster" : "byTheContext";
                         });
