// A window of hundreds of sliders.

#include "Sliders.h"

#include <arborium/render/KsGL.h>
#include <arborium/render/KsGLContext.h>

namespace {

constexpr int count = 300;

std::string manySliders()
{
    std::string text = "TopLevelDialog { label \"Many\" ";
    for (int i = 0; i < count; ++i) {
        if (i % 5 == 0) text += "ColumnDialog { ";
        text += "DialogRealSlider { label \"Value\" value 0.5 colors [ 0 0 1, 1 1 0 ] } ";
        if (i % 5 == 4) text += "} ";
    }
    return text + "}";
}

std::vector<KsDialogCustomSlider*> barsOf(const QWidget* window)
{
    std::vector<KsDialogCustomSlider*> bars;
    for (QObject* child : window->findChildren<QObject*>()) {
        if (auto* bar = dynamic_cast<KsDialogCustomSlider*>(child)) bars.push_back(bar);
    }
    return bars;
}

long picturesOf(const std::vector<KsDialogCustomSlider*>& bars)
{
    long pictures = 0;
    for (const KsDialogCustomSlider* bar : bars) pictures += bar->getNumPictures();
    return pictures;
}

/// Opens the window and moves one of its sliders.
void openAndMove()
{
    Stage stage(manySliders(), Stage::Window);
    QWidget* window = stage.dialog->getBaseWidget();
    window->grab();
    const std::vector<KsDialogCustomSlider*> bars = barsOf(window);
    ASSERT_EQ(bars.size(), static_cast<std::size_t>(count));
    for (const KsDialogCustomSlider* bar : bars) EXPECT_GE(bar->getNumPictures(), 1);
    const long before = picturesOf(bars);
    window->grab();
    window->repaint();
    EXPECT_EQ(picturesOf(bars), before) << "nothing changed";
    bars[7]->setValue(0.25f);
    window->grab();
    EXPECT_EQ(picturesOf(bars), before + 1);
    for (const QWidget* widget : window->findChildren<QWidget*>())
        EXPECT_FALSE(widget->testAttribute(Qt::WA_NativeWindow));
}

} // namespace

TEST(Slider, hundredsShareOneContextAndAreRedrawnOnlyWhenTheyChange)
{
    openAndMove();
    const std::uint64_t context = KsGLContext::getNumber();
    EXPECT_EQ(context, KsGLContext::isAvailable() ? 1u : 0u);
    KsGL::setRoad(KsGL::OPENGL);
    openAndMove();
    KsGL::setRoad(KsGL::BEST);
    EXPECT_EQ(KsGLContext::getNumber(), context);
}
