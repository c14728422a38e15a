// The bar of a slider in a window beside pictures of it, by raster and by the context of the process.
//
// A picture that was meant to change is made again with NEW_PICTURES=1 in the environment.

#include <arborium/render/KsGL.h>
#include <formweave/KsDialogCustomSlider.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>
#include <gtest/gtest.h>

namespace {

const KbColor red(0.9f, 0.1f, 0.1f), green(0.1f, 0.8f, 0.2f), blue(0.15f, 0.25f, 0.9f);

class Bar : public KsDialogCustomSlider {
public:
    explicit Bar(QWidget* parent) : KsDialogCustomSlider(parent) { sizeChanged(80, 24); }

    QImage picture(float scale, bool& byContext)
    {
        const KbColor background(0.94f, 0.94f, 0.94f);
        KsGL::Target target(80, 24, scale, &background);
        byContext = target.usesGL();
        paintGraphic();
        std::vector<std::uint32_t> rgb;
        target.finish(rgb);
        return QImage(reinterpret_cast<const uchar*>(rgb.data()), target.getWidth(),
                      target.getHeight(), 4 * target.getWidth(), QImage::Format_RGB32)
            .copy();
    }
};

struct Look {
    const char* name;
    void (*apply)(Bar& bar);
};

const KbColor three[] = {red, green, blue};
const Look looks[] = {
    {"one-color", [](Bar& bar) { bar.setColors(&blue, 1, 0); }},
    {"bands", [](Bar& bar) { bar.setColors(three, 3, 0); }},
    {"gradient", [](Bar& bar) { bar.setColors(three, 3, 1); }},
    {"disabled",
     [](Bar& bar) {
         bar.setColors(three, 3, 1);
         bar.setEnable(0);
     }},
    {"left-end", [](Bar& bar) { bar.setValue(0); }},
};

class BarPicture : public testing::TestWithParam<Look> {};

/// Pixels that differ by more than a little in any colour.
int different(const QImage& a, const QImage& b, int tolerance)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QColor p = a.pixelColor(x, y), q = b.pixelColor(x, y);
            count += std::abs(p.red() - q.red()) > tolerance ||
                     std::abs(p.green() - q.green()) > tolerance ||
                     std::abs(p.blue() - q.blue()) > tolerance;
        }
    return count;
}

} // namespace

TEST_P(BarPicture, isAsItWasDrawnOnce)
{
    for (const int scale : {1, 2}) {
        QWidget window;
        Bar bar(&window);
        bar.setValue(0.4f);
        GetParam().apply(bar);
        const QString file = QString("%1/tests/slider/pictures/%2-%3.png")
                                 .arg(FORMWEAVE_SOURCE_DIR, GetParam().name)
                                 .arg(scale);
        bool byContext = true;
        KsGL::setRoad(KsGL::RASTER);
        const QImage byRaster = bar.picture(static_cast<float>(scale), byContext);
        ASSERT_FALSE(byContext);
        if (qEnvironmentVariableIsSet("NEW_PICTURES")) {
            ASSERT_TRUE(byRaster.save(file));
        }
        const QImage wanted(file);
        ASSERT_EQ(byRaster.size(), wanted.size()) << file.toStdString();
        EXPECT_EQ(different(byRaster, wanted, 1), 0) << file.toStdString();

        KsGL::setRoad(KsGL::OPENGL);
        const QImage drawn = bar.picture(static_cast<float>(scale), byContext);
        KsGL::setRoad(KsGL::BEST);
        if (!byContext) GTEST_SKIP() << "no OpenGL here";
        // The rules for slanted lines leave a context some freedom; what is half covered is counted
        // in quarters there.
        EXPECT_LE(different(drawn, wanted, 64), 12 * scale) << file.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Looks, BarPicture, testing::ValuesIn(looks),
                         [](const testing::TestParamInfo<Look>& look) {
                             QString name(look.param.name);
                             return name.replace("-", "_").toStdString();
                         });
