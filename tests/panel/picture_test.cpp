// What a person sees of a panel.

#include "Panel.h"

#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QFile>
#include <QImage>

namespace {

const QColor background(255, 0, 255);

int distance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

class Picture : public PanelTest {
protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
        KsFormweave::setSkin("default");
    }
    KsTopLevelDialog* example()
    {
        QFile file(FORMWEAVE_SOURCE_DIR "/examples/render-settings.arb");
        if (!file.open(QIODevice::ReadOnly)) return nullptr;
        KsTopLevelDialog* dialog = add(file.readAll().toStdString());
        if (dialog) dialog->position3D = KbVec3f(40, 30, 0);
        frame();
        return dialog;
    }
    /// The scene, a unit being `scale` pixels.
    QImage draw(int scale = 1)
    {
        KsOffscreenRenderer renderer(KbViewportRegion(windowWidth * scale, windowHeight * scale));
        renderer.setBackgroundColor(KbColor(1, 0, 1));
        renderer.setSupersampling(2);
        EXPECT_TRUE(renderer.render(scene.get()));
        const QImage image(renderer.getImage().data(), renderer.getWidth(), renderer.getHeight(),
                           QImage::Format_RGBA8888);
        const QImage copy = image.convertToFormat(QImage::Format_RGB32);
        renderer.releaseScene();
        return copy;
    }
    QRgb at(const QImage& image, const KbVec3f& world) const
    {
        const KbVec2f p = pixel(world);
        const float scale = static_cast<float>(image.width()) / windowWidth;
        return image.pixel(static_cast<int>(p[0] * scale),
                           image.height() - 1 - static_cast<int>(p[1] * scale));
    }
    /// The pixels that a box of the scene covers, seen from the front, and `more` around them.
    QRect areaOf(const QImage& image, const KbBox3f& box, double more = 0) const
    {
        const KbVec2f low = pixel(box.getMin()), high = pixel(box.getMax());
        const double scale = static_cast<double>(image.width()) / windowWidth;
        const double left = low[0] - more, right = high[0] + more;
        const double top = windowHeight - high[1] - more, bottom = windowHeight - low[1] + more;
        return QRect(QPoint(static_cast<int>(std::floor(left * scale + 1e-3)),
                            static_cast<int>(std::floor(top * scale + 1e-3))),
                     QPoint(static_cast<int>(std::ceil(right * scale - 1e-3)) - 1,
                            static_cast<int>(std::ceil(bottom * scale - 1e-3)) - 1));
    }
    static QRect changed(const QImage& a, const QImage& b)
    {
        QRect area;
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x)
                if (a.pixel(x, y) != b.pixel(x, y)) area |= QRect(x, y, 1, 1);
        return area;
    }
    /// How many pixels of an area are as dark as letters.
    static int darkPixels(const QImage& image, const QRect& area)
    {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                if (image.rect().contains(x, y) && qGray(image.pixel(x, y)) < 60) ++count;
        return count;
    }
    /// The widest difference between two pixels of an area.
    static int spread(const QImage& image, const QRect& area)
    {
        int most = 0;
        const QRgb first = image.pixel(area.topLeft());
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                most = std::max(most, distance(first, image.pixel(x, y)));
        return most;
    }
    /// The height of a text's base line in the world.
    float baseLine(KsFormweave* element, const char* part)
    {
        KsGetMatrixAction action(viewport);
        KsNode* text = firstIn<KsText3>(element, part);
        if (KsPath* path = text ? pathTo(text) : nullptr) action.apply(path);
        search.reset();
        KbVec3f world;
        action.getMatrix().multVecMatrix(KbVec3f(0, 0, 0), world);
        return world[1];
    }
    /// The colours of the button: two of the outer rim, two of the inner one, and its face.
    std::vector<QRgb> bevel(const QImage& image, KsTopLevelDialog* dialog)
    {
        const KbVec3f place = dialog->position3D;
        const KbVec3f size = dialog->getTopLevelSize();
        const KbVec3f centre(place[0] + size[0] - 12, -place[1] - 12, place[2] + 1.1f);
        std::vector<QRgb> colours;
        for (const auto& p : {KbVec3f(-6.5f, 0, 0), KbVec3f(0, 6.5f, 0), KbVec3f(6.5f, 0, 0),
                              KbVec3f(0, -6.5f, 0), KbVec3f(-5.5f, 0, 0), KbVec3f(0, 5.5f, 0),
                              KbVec3f(5.5f, 0, 0), KbVec3f(0, -5.5f, 0), KbVec3f(0, 0, 0)})
            colours.push_back(at(image, centre + p));
        return colours;
    }
};

const std::vector<QRgb> releasedBevel = {
    qRgb(179, 179, 255), qRgb(179, 179, 255), qRgb(51, 51, 255),
    qRgb(51, 51, 255),   qRgb(255, 255, 255), qRgb(255, 255, 255),
    qRgb(128, 128, 255), qRgb(128, 128, 255), qRgb(179, 179, 255)};

} // namespace

TEST_F(Picture, nothingIsDrawnOutsideTheFrame)
{
    KsTopLevelDialog* dialog = example();
    ASSERT_NE(dialog, nullptr);
    dialog->label = "A title that is much longer than all the room that there is between the left "
                    "edge and the button of the panel\\nand has a second and\\na third line";
    for (const bool strip : {false, true}) {
        dialog->minimized = strip;
        for (const int scale : {1, 2}) {
            const QImage image = draw(scale);
            const QRect frameArea = areaOf(image, boxOf(dialog, "frameSep"));
            int outside = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    if (!frameArea.contains(x, y) && image.pixel(x, y) != background.rgb())
                        ++outside;
            EXPECT_EQ(outside, 0) << (strip ? "strip" : "panel") << " at " << scale;
            EXPECT_GT(darkPixels(image, frameArea), 200);
        }
    }
}

TEST_F(Picture, theTitleEndsBeforeTheButton)
{
    KsTopLevelDialog* dialog = example();
    const KbBox3f button = boxOf(dialog, "minSep");
    const QImage before = draw();
    dialog->label = "MMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMM";
    const QImage after = draw();
    const QRect area = changed(before, after);
    ASSERT_FALSE(area.isEmpty());
    EXPECT_LE(area.right(), areaOf(after, button).left() - 2);
    EXPECT_GE(area.right(), areaOf(after, button).left() - 6) << "but only there";
}

TEST_F(Picture, theTitleBarHasTheFramesColourAndTheTitleStandsInIt)
{
    KsTopLevelDialog* dialog = example();
    const QImage image = draw(2);
    const KbBox3f box = boxOf(dialog, "frameSep");
    const KbBox3f title = boxOf(firstIn<KsText3>(dialog, "labelSep"));
    const KbBox3f button = boxOf(dialog, "minSep");
    // Between title and button.
    const QRect free = areaOf(image, KbBox3f(title.getMax()[0] + 3, box.getMax()[1] - 20, 0,
                                             button.getMin()[0] - 3, box.getMax()[1] - 2, 0));
    ASSERT_GT(free.width(), 100);
    EXPECT_EQ(spread(image, free), 0);
    EXPECT_LE(distance(image.pixel(free.center()), qRgb(179, 179, 255)), 4);
    const QRect letters = areaOf(image, title);
    EXPECT_GT(darkPixels(image, letters), 100) << "the letters are black";
    EXPECT_EQ(darkPixels(image, QRect(areaOf(image, box).topLeft(),
                                      QPoint(areaOf(image, box).right(), letters.top() - 2))),
              0);
}

TEST_F(Picture, aChangedBoxChangesOnlyItsOwnPixels)
{
    KsTopLevelDialog* dialog = example();
    for (const char* id : {"antialiasing", "shadows", "redraw", "statistics"}) {
        auto* box = child(dialog, id);
        ASSERT_NE(box, nullptr);
        const QImage before = draw();
        EXPECT_TRUE(click(middleOf(box, "stateSep")));
        const QImage after = draw();
        const QRect area = changed(before, after);
        ASSERT_FALSE(area.isEmpty()) << id;
        EXPECT_TRUE(areaOf(after, boxOf(box, "frameSep")).contains(area)) << id;
        // What was clicked is black or white now.
        const QRgb toggle = at(after, boxOf(box, "stateSep").getCenter());
        EXPECT_LE(distance(toggle, box->state ? qRgb(0, 0, 0) : qRgb(255, 255, 255)), 8) << id;
        box->state = !box->state;
        EXPECT_TRUE(changed(before, draw()).isEmpty()) << id;
    }
}

TEST_F(Picture, textsOfARowShareABaseLine)
{
    KsTopLevelDialog* dialog = example();
    for (const char* id : {"antialiasing", "transparency", "textures", "depthOfField", "shadows",
                           "reflections", "headLight", "rayTracing", "redraw", "statistics"}) {
        auto* box = child(dialog, id);
        EXPECT_NEAR(baseLine(box, "labelSwitch"), baseLine(box, "onOffStringSep"), 1e-3) << id;
    }
    EXPECT_NEAR(baseLine(child(dialog, "antialiasing"), "labelSwitch"),
                baseLine(child(dialog, "shadows"), "labelSwitch"), 1.01)
        << "and neighbours in two columns nearly so";
}

TEST_F(Picture, textsOfBoxesStandInTheirFrames)
{
    KsTopLevelDialog* dialog = example();
    for (const char* id : {"antialiasing", "transparency", "textures", "depthOfField", "shadows",
                           "reflections", "headLight", "rayTracing", "redraw", "statistics"}) {
        auto* box = child(dialog, id);
        const KbBox3f whole = boxOf(box, "mainCptSeparator");
        const KbBox3f control = boxOf(box, "frameSep");
        const KbBox3f label = boxOf(firstIn<KsText3>(box, "labelSwitch"));
        const KbBox3f value = boxOf(firstIn<KsText3>(box, "onOffStringSep"));
        EXPECT_GE(label.getMin()[0], whole.getMin()[0]) << id;
        EXPECT_LE(label.getMax()[0], control.getMin()[0]) << id;
        EXPECT_GE(value.getMin()[0], boxOf(box, "stateSep").getMax()[0]) << id;
        EXPECT_LE(value.getMax()[0], control.getMax()[0]) << id;
        EXPECT_LE(std::max(label.getMax()[1], value.getMax()[1]), whole.getMax()[1]) << id;
        EXPECT_GE(std::min(label.getMin()[1], value.getMin()[1]), whole.getMin()[1]) << id;
    }
}

TEST_F(Picture, theBevelHasItsColoursAtEachSize)
{
    KsTopLevelDialog* dialog = example();
    for (const int scale : {1, 2, 3}) {
        const std::vector<QRgb> colours = bevel(draw(scale), dialog);
        for (std::size_t i = 0; i < colours.size(); ++i)
            EXPECT_LE(distance(colours[i], releasedBevel[i]), scale == 1 ? 40 : 6)
                << "place " << i << " at " << scale << ": " << std::hex << colours[i];
    }
    press(middleOf(dialog, "minSep"));
    const std::vector<QRgb> pressed = bevel(draw(2), dialog);
    EXPECT_LE(distance(pressed[0], qRgb(128, 128, 255)), 6);
    EXPECT_LE(distance(pressed[2], qRgb(255, 255, 255)), 6);
    release(KbVec2f(0, 0));
}

TEST_F(Picture, nothingFlickersWhenThePanelIsTurned)
{
    // Faces that lie in one plane would show through each other in stripes.
    auto* part = new KsSeparator;
    auto* turn = new KsTransform;
    turn->center = KbVec3f(250, -150, 0);
    part->addChild(turn);
    scene->addChild(part);
    KsTopLevelDialog* dialog = example();
    const KsRef<KsTopLevelDialog> keep(dialog);
    scene->removeChild(scene->findChild(dialog));
    part->addChild(dialog);
    for (const float degrees : {0.3f, 1.7f, 7.0f, 20.0f}) {
        for (const KbVec3f& axis : {KbVec3f(1, 0, 0), KbVec3f(0, 1, 0), KbVec3f(1, 1, 0)}) {
            turn->rotation = KbRotation(axis, degrees * static_cast<float>(M_PI) / 180);
            frame();
            const QImage image = draw(2);
            KsGetMatrixAction toWorld(viewport);
            toWorld.apply(pathTo(dialog));
            search.reset();
            const KbMatrix matrix = toWorld.getMatrix();
            const auto look = [&](float x, float y, float z) {
                KbVec3f world;
                matrix.multVecMatrix(KbVec3f(x, y, z), world);
                return at(image, world);
            };
            const KbVec3f size = dialog->getTopLevelSize();
            // One colour all over a face, whatever light falls on it.
            const QRgb face = look(40 + size[0] / 2, -30 - size[1] + 2, 1);
            EXPECT_LE(distance(face, qRgb(179, 179, 255)), 60);
            int wrong = 0;
            // Along the title bar, right of the title, and along the lower rim.
            for (float x = size[0] / 2; x < size[0] - 24; x += 1.3f)
                if (distance(look(40 + x, -30 - 4, 1), face) > 8) ++wrong;
            for (float x = 4; x < size[0] - 4; x += 1.3f)
                if (distance(look(40 + x, -30 - size[1] + 2, 1), face) > 8) ++wrong;
            // The face of the button.
            for (float x = -4; x <= 4; x += 0.5f)
                for (float y = -4; y <= 4; y += 0.5f)
                    if (distance(look(40 + size[0] - 12 + x, -30 - 12 + y, 1.1f), face) > 8)
                        ++wrong;
            EXPECT_EQ(wrong, 0) << degrees << " degrees about " << axis[0] << ' ' << axis[1];
        }
    }
}

TEST_F(Picture, aStripIsAllThatIsLeftOfAMinimizedPanel)
{
    KsTopLevelDialog* dialog = example();
    clickButton(dialog);
    const QImage image = draw();
    const QRect strip(40, 30, static_cast<int>(dialog->getTopLevelSize()[0]), 20);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (strip.contains(x, y) == (image.pixel(x, y) == background.rgb()))
                FAIL() << "at " << x << ' ' << y;
    EXPECT_GT(darkPixels(image, strip), 50) << "with its title";
}

TEST_F(Picture, aDragMovesThePictureAndNothingElse)
{
    KsTopLevelDialog* dialog = example();
    const QImage before = draw();
    const QRect area = areaOf(before, boxOf(dialog, "frameSep"));
    drag(titleOf(dialog), 50, -70);
    const QImage after = draw();
    const QImage a = before.copy(area), b = after.copy(area.translated(50, 70));
    int most = 0, count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const int d = distance(a.pixel(x, y), b.pixel(x, y));
            most = std::max(most, d);
            if (d > 0) ++count;
        }
    // A sample at the very edge of a letter may fall to the other side.
    EXPECT_LE(most, 16);
    EXPECT_LE(count, 20);
}

TEST_F(Picture, aHiddenPanelLeavesTheBackground)
{
    KsTopLevelDialog* dialog = example();
    dialog->show3D(0);
    const QImage image = draw();
    EXPECT_EQ(spread(image, image.rect()), 0);
    EXPECT_EQ(image.pixel(0, 0), background.rgb());
}

TEST_F(Picture, disabledElementsLookDifferent)
{
    KsTopLevelDialog* dialog = example();
    auto* box = child(dialog, "statistics");
    const QImage before = draw();
    box->enable = false;
    const QImage after = draw();
    const QRect area = changed(before, after);
    ASSERT_FALSE(area.isEmpty());
    EXPECT_TRUE(areaOf(after, boxOf(box)).contains(area));
    box->enable = true;
    EXPECT_TRUE(changed(before, draw()).isEmpty());
}
