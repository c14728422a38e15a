#include "node_scenes.h"

#include <QFont>
#include <QFontMetricsF>

#include <algorithm>

namespace {

std::function<KbBox3f()> box(float x0, float y0, float z0, float x1, float y1, float z1)
{
    return [=] { return KbBox3f(x0, y0, z0, x1, y1, z1); };
}

/// The box of lines of text from x 0 rightward, the base line of the first at y 0.
KbBox3f textBox(const QString& family, double size, const QStringList& lines, float depth = 0)
{
    constexpr int pixels = 1000;
    QFont font(family);
    font.setPixelSize(pixels);
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(font);
    double width = 0;
    for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
    const double scale = size / pixels;
    const double below = (lines.size() - 1) * metrics.lineSpacing() + metrics.descent();
    return KbBox3f(0, static_cast<float>(-below * scale), -depth, static_cast<float>(width * scale),
                   static_cast<float>(metrics.ascent() * scale), 0);
}

KbBox3f moved(KbBox3f all, const KbVec3f& by)
{
    return KbBox3f(all.getMin() + by, all.getMax() + by);
}

std::vector<NodeScene> makeScenes()
{
    return {
        // Groups.
        {"Group",
         R"(Group {
                Material { diffuseColor 0.9 0.3 0.2 }
                Translation { translation -1.2 0 0 }
                DEF left Cube { }
            }
            Translation { translation 2.6 0 0 }
            DEF right Sphere { })",
         box(-2.2f, -1, -1, 2.4f, 1, 1),
         {{-1.2f, 0, "left"}, {1.4f, 0, "right"}, {0.1f, 0, nullptr}}},
        {"Separator",
         R"(Separator {
                Material { diffuseColor 0.9 0.3 0.2 }
                Translation { translation -1.2 0 0 }
                DEF left Cube { }
            }
            Translation { translation 1.4 0 0 }
            DEF right Sphere { })",
         box(-2.2f, -1, -1, 2.4f, 1, 1),
         {{-1.2f, 0, "left"}, {1.4f, 0, "right"}, {0.1f, 0, nullptr}}},
        {"Switch",
         R"(Switch { whichChild -1 Cube { width 9 } }
            Switch {
                whichChild -3
                DEF all1 Cube { width 0.8 height 0.8 depth 0.8 }
                Translation { translation 0 1.2 0 }
                DEF all2 Sphere { radius 0.5 }
            }
            Translation { translation -2.2 -1.2 0 }
            Switch {
                whichChild 1
                Cube { width 9 }
                DEF second Cone { bottomRadius 0.8 }
            }
            Translation { translation 4.4 0 0 }
            Switch {
                whichChild -2
                Cube { width 9 }
                DEF inherited Cylinder { radius 0.7 }
            })",
         box(-3, -1, -0.8f, 2.9f, 1.7f, 0.8f),
         {{-2.2f, -0.5f, "second"},
          {0, 0, "all1"},
          {0, 1.2f, "all2"},
          {2.2f, 0, "inherited"},
          {1.2f, 0, nullptr}}},
        {"File",
         R"(File { name "lamp.arb" })",
         box(-1.3f, -1.7f, -1.3f, 1.3f, 1.7f, 1.3f),
         {{0, -1.6f, "foot"}, {0.2f, 0.5f, "shade"}, {0.6f, -0.6f, nullptr}}},

        // Transformations.
        {"Translation",
         R"(DEF still Cube { width 1 height 1 depth 1 }
            Translation { translation 1.5 1 -0.5 }
            Material { diffuseColor 0.3 0.6 0.9 }
            DEF moved Cube { width 1 height 1 depth 1 })",
         box(-0.5f, -0.5f, -1, 2, 1.5f, 0.5f),
         {{0, 0, "still"}, {1.5f, 1, "moved"}, {1.5f, 0, nullptr}}},
        {"Rotation",
         R"(Rotation { rotation 0 0 1 0.7853982 }
            DEF turned Cube { width 2 height 2 depth 1 })",
         box(-1.41421f, -1.41421f, -0.5f, 1.41421f, 1.41421f, 0.5f),
         {{1.2f, 0, "turned"}, {1.2f, 0.5f, nullptr}}},
        {"Scale",
         R"(Scale { scaleFactor 2 0.5 1 }
            DEF flat Sphere { })",
         box(-2, -0.5f, -1, 2, 0.5f, 1),
         {{1.8f, 0, "flat"}, {0, 0.6f, nullptr}}},
        {"Transform",
         R"(Transform {
                translation 0 -1 0
                rotation 0 0 1 0.7853982
                scaleFactor 2 1 1
                center -0.5 0 0
            }
            DEF placed Cube { width 1 height 1 depth 1 })",
         box(-0.85355f, -1.35355f, -0.5f, 1.26777f, 0.76777f, 0.5f),
         {{0.2f, -0.3f, "placed"}, {-0.8f, 0.7f, nullptr}}},
        {"MatrixTransform",
         R"(MatrixTransform { matrix 1 0 0 0  0.5 1 0 0  0 0 1 0  0 0 0 1 }
            DEF slanting Cube { depth 1 })",
         box(-1.5f, -1, -0.5f, 1.5f, 1, 0.5f),
         {{1.3f, 0.9f, "slanting"}, {1.3f, -0.9f, nullptr}}},

        // Looks.
        {"Material",
         R"(Separator { Translation { translation 2.1 0 -2 } Cube { width 0.6 height 1.6 depth 0.2 } }
            Separator {
                Translation { translation -2.1 0 0 }
                Material { ambientColor 0.3 0.1 0.1 diffuseColor 0.8 0.2 0.2 }
                DEF dull Sphere { radius 0.9 }
            }
            Separator {
                Material { diffuseColor 0.2 0.5 0.2 specularColor 1 1 1 shininess 0.7 }
                DEF shining Sphere { radius 0.9 }
            }
            Separator {
                Translation { translation 2.1 0 0 }
                Material { diffuseColor 0.2 0.2 0.5 emissiveColor 0.2 0.2 0.5 transparency 0.5 }
                DEF glass Sphere { radius 0.9 }
            })",
         box(-3, -0.9f, -2.1f, 3, 0.9f, 0.9f),
         {{-2.1f, 0, "dull"}, {0, 0, "shining"}, {2.1f, 0, "glass"}, {1.05f, 0, nullptr}}},
        {"BaseColor",
         R"(Material { diffuseColor 0 0 1 emissiveColor 0 0.2 0 }
            BaseColor { rgb 0.9 0.5 0.1 }
            DEF amber Cone { })",
         box(-1, -1, -1, 1, 1, 1),
         {{0, 0, "amber"}, {0.9f, 0.9f, nullptr}}},
        {"LightModel",
         R"(Material { diffuseColor 0.7 0.5 0.2 }
            LightModel { model PHONG }
            Translation { translation -1.3 0 0 }
            DEF lit Cube { width 1.6 height 1.6 depth 1.6 }
            LightModel { model BASE_COLOR }
            Translation { translation 2.6 0 0 }
            DEF plain Cube { width 1.6 height 1.6 depth 1.6 })",
         box(-2.1f, -0.8f, -0.8f, 2.1f, 0.8f, 0.8f),
         {{-1.3f, 0, "lit"}, {1.3f, 0, "plain"}, {0, 0, nullptr}}},
        {"Texture2",
         R"(Material { diffuseColor 1 1 1 }
            Texture2 { filename "tile.png" }
            Translation { translation -1.3 0 0 }
            DEF tiles Cube { }
            Translation { translation 2.7 0 0 }
            DEF ball Sphere { radius 1.1 })",
         box(-2.3f, -1.1f, -1.1f, 2.5f, 1.1f, 1.1f),
         {{-1.3f, 0, "tiles"}, {1.4f, 0, "ball"}, {0, 0, nullptr}}},
        {"Font",
         R"(Translation { translation -2.5 0.5 0 }
            Font { name "DejaVu Serif" size 1.4 }
            DEF serif Text3 { string "Serif" }
            Translation { translation 0 -1.5 0 }
            Font { name "DejaVu Sans Mono" size 0.7 }
            DEF mono Text3 { string "monospaced" })",
         [] {
             KbBox3f all = moved(textBox("DejaVu Serif", 1.4, {"Serif"}), KbVec3f(-2.5f, 0.5f, 0));
             all.extendBy(
                 moved(textBox("DejaVu Sans Mono", 0.7, {"monospaced"}), KbVec3f(-2.5f, -1, 0)));
             return all;
         },
         {{-2.3f, 0.8f, "serif"}, {1.4f, -0.8f, "mono"}, {2.4f, 0.8f, nullptr}}},
        {"ShapeHints",
         R"(DEF pages Coordinate3 {
                point [ -1 -1 0.7, 0 -1 -0.5, 1 -1 0.7, -1 1 0.7, 0 1 -0.5, 1 1 0.7 ]
            }
            Material { diffuseColor 0.8 0.7 0.5 }
            Translation { translation -1.6 0 0 }
            DEF both IndexedFaceSet { coordIndex [ 0, 1, 4, 3, -1, 1, 4, 5, 2, -1 ] }
            ShapeHints { vertexOrdering COUNTERCLOCKWISE shapeType SOLID }
            Translation { translation 3.2 0 0 }
            DEF front IndexedFaceSet { coordIndex [ 0, 1, 4, 3, -1, 1, 4, 5, 2, -1 ] })",
         box(-2.6f, -1, -0.5f, 2.6f, 1, 0.7f),
         {{-2, 0, "both"}, {1.2f, 0, "front"}, {0, 0, nullptr}}},
        {"PickStyle",
         R"(Translation { translation -2.1 0 0 }
            DEF shape Sphere { radius 0.9 }
            PickStyle { style BOUNDING_BOX }
            Translation { translation 2.1 0 0 }
            DEF boxed Sphere { radius 0.9 }
            PickStyle { style UNPICKABLE }
            Translation { translation 2.1 0 0 }
            Sphere { radius 0.9 })",
         box(-3, -0.9f, -0.9f, 3, 0.9f, 0.9f),
         {{-2.1f, 0, "shape"},
          {-1.3f, 0.8f, nullptr},
          {0, 0, "boxed"},
          {0.8f, 0.8f, "boxed"},
          {2.1f, 0, nullptr}}},
        {"ClipPlane",
         R"(ClipPlane { plane 0.7071068 0.7071068 0 0 }
            Material { diffuseColor 0.5 0.8 0.5 }
            DEF half Sphere { radius 1.6 })",
         box(-1.6f, -1.6f, -1.6f, 1.6f, 1.6f, 1.6f), // boxes are not cut
         {{0.8f, 0.8f, "half"}, {-0.8f, -0.8f, nullptr}}},

        // Lights.
        {"DirectionalLight",
         R"(DirectionalLight { direction -1 -1 -0.3 color 1 0.7 0.4 intensity 0.9 }
            Translation { translation -1.4 0 0 }
            DEF ball Sphere { }
            Translation { translation 2.6 0 0 }
            DEF block Cube { width 1.6 height 1.6 depth 1.6 })",
         box(-2.4f, -1, -1, 2, 1, 1),
         {{-1.4f, 0, "ball"}, {1.2f, 0, "block"}, {0, 0, nullptr}}},
        {"PointLight",
         R"(PointLight { location 0 0.2 0.4 color 0.5 0.7 1 }
            Translation { translation 0 -1.1 0 }
            DEF floor Cube { width 5 height 0.2 depth 3 }
            Translation { translation 1.2 0.6 0 }
            DEF ball Sphere { radius 0.5 })",
         box(-2.5f, -1.2f, -1.5f, 2.5f, 0, 1.5f),
         {{-2, -1.1f, "floor"}, {1.2f, -0.5f, "ball"}, {0, 0, nullptr}}},

        // Cameras and events.
        {"OrthographicCamera",
         R"(OrthographicCamera {
                position 0 6 0 orientation 1 0 0 -1.5707963 height 4 nearDistance 1 farDistance 10
            }
            DEF near Cube { width 1 height 1 depth 2 }
            Translation { translation 1.5 -2 0 }
            DEF far Cube { width 1 height 1 depth 2 })",
         box(-0.5f, -2.5f, -1, 2, 0.5f, 1),
         {{0, 0, "near"}, {1.5f, -2, "far"}, {1.5f, 0, nullptr}}},
        {"PerspectiveCamera",
         R"(PerspectiveCamera {
                position 0 6 0 orientation 1 0 0 -1.5707963 heightAngle 0.7 nearDistance 1
                farDistance 10
            }
            DEF near Cube { width 1 height 1 depth 2 }
            Translation { translation 1.5 -2 0 }
            DEF far Cube { width 1 height 1 depth 2 })",
         box(-0.5f, -2.5f, -1, 2, 0.5f, 1),
         {{0, 0, "near"}, {1.5f, -2, "far"}, {1.5f, 0, nullptr}}},
        {"EventCallback",
         R"(EventCallback { }
            DEF seen Cube { })",
         box(-1, -1, -1, 1, 1, 1),
         {{0, 0, "seen"}, {1.2f, 0, nullptr}}},

        // Points and what is made over them.
        {"Coordinate3",
         R"(Coordinate3 { point [ -2 -1 0, 2 -1 0, 0 1.5 0.5 ] }
            Material { diffuseColor 0.4 0.7 0.9 }
            DEF triangle FaceSet { })",
         box(-2, -1, 0, 2, 1.5f, 0.5f),
         {{0, 0, "triangle"}, {1.9f, 0, nullptr}}},
        {"Normal",
         R"(Coordinate3 { point [ -2 -1.5 0, 2 -1.5 0, 2 1.5 0, -2 1.5 0 ] }
            Normal { vector [ -0.5 -0.5 0.7, 0.5 -0.5 0.7, 0.5 0.5 0.7, -0.5 0.5 0.7 ] }
            Material { diffuseColor 0.8 0.5 0.6 specularColor 0.6 0.6 0.6 }
            DEF pillow FaceSet { })",
         box(-2, -1.5f, 0, 2, 1.5f, 0),
         {{1.9f, 1.4f, "pillow"}, {2.1f, 0, nullptr}}},
        {"VertexProperty",
         R"(Material { diffuseColor 1 1 1 }
            Texture2 { filename "tile.png" }
            DEF sheet FaceSet {
                vertexProperty VertexProperty {
                    vertex [ -2 -1.5 0, 2 -1.5 0, 2 1.5 0, -2 1.5 0 ]
                    normal [ 0.2 0.3 1 ]
                    texCoord [ 0 0, 1.5 0, 1 1, 0 1 ]
                }
            })",
         box(-2, -1.5f, 0, 2, 1.5f, 0),
         {{1.9f, 1.4f, "sheet"}, {2.1f, 0, nullptr}}},
        {"FaceSet",
         R"(Coordinate3 {
                point [ -1.5 1.4 0, -1.8233 0.445 0, -2.8315 0.4326 0, -2.0231 -0.17 0,
                        -2.3229 -1.1326 0, -1.5 -0.55 0, -0.6771 -1.1326 0, -0.9769 -0.17 0,
                        -0.1685 0.4326 0, -1.1767 0.445 0,
                        1.6 1.2 0, 0.4587 0.3708 0, 0.8947 -0.9708 0, 2.3053 -0.9708 0,
                        2.7413 0.3708 0 ]
            }
            Material { diffuseColor 0.95 0.8 0.3 }
            DEF faces FaceSet { numVertices [ 10, 5 ] })",
         box(-2.8315f, -1.1326f, 0, 2.7413f, 1.4f, 0),
         {{-1.5f, 0, "faces"}, {-1.5f, -0.9f, nullptr}, {1.6f, 0, "faces"}, {0, 1, nullptr}}},
        {"IndexedFaceSet",
         R"(Coordinate3 {
                point [ 1.3 0 0, 0 1.3 0, 0 0 1.3, -1.3 0 0, 0 -1.3 0, 0 0 -1.3,
                        -2.2 -2 0, 0 -1.5 0, 2.2 -2 0, 0 -1.8 0 ]
            }
            Material { diffuseColor 0.7 0.4 0.8 }
            DEF jewel IndexedFaceSet {
                coordIndex [ 0, 1, 2, -1, 1, 3, 2, -1, 3, 4, 2, -1, 4, 0, 2, -1,
                             1, 0, 5, -1, 3, 1, 5, -1, 4, 3, 5, -1, 0, 4, 5, -1,
                             6, 9, 8, 7, -1 ]
            })",
         box(-2.2f, -2, -1.3f, 2.2f, 1.3f, 1.3f),
         {{0.3f, 0.3f, "jewel"},
          {0.9f, 0.9f, nullptr},
          {1.2f, -1.8f, "jewel"},
          {0, -1.95f, nullptr}}},
        {"IndexedLineSet",
         R"(Coordinate3 {
                point [ -1 -1 -1, 1 -1 -1, 1 1 -1, -1 1 -1, -1 -1 1, 1 -1 1, 1 1 1, -1 1 1,
                        -2.5 -1.8 0, -1 -2 0, 1 -1.8 0, 2.5 -2 0 ]
            }
            Material { diffuseColor 0.9 0.9 0.4 }
            DEF wires IndexedLineSet {
                coordIndex [ 0, 1, 2, 3, 0, -1, 4, 5, 6, 7, 4, -1, 0, 4, -1, 1, 5, -1, 2, 6, -1,
                             3, 7, -1, 8, 9, 10, 11, -1 ]
            })",
         box(-2.5f, -2, -1, 2.5f, 1, 1),
         {{1, 0, "wires"}, {0, -1.9f, "wires"}, {0, 0, nullptr}, {2, 0, nullptr}}},

        // Bodies.
        {"Cube",
         R"(Material { diffuseColor 0.8 0.4 0.3 }
            DEF block Cube { width 3 height 1 depth 2 })",
         box(-1.5f, -0.5f, -1, 1.5f, 0.5f, 1),
         {{1.4f, 0.4f, "block"}, {0, 0.6f, nullptr}}},
        {"Sphere",
         R"(Material { diffuseColor 0.4 0.5 0.9 }
            DEF ball Sphere { radius 1.7 })",
         box(-1.7f, -1.7f, -1.7f, 1.7f, 1.7f, 1.7f),
         {{1.1f, 1.1f, "ball"}, {1.4f, 1.4f, nullptr}}},
        {"Cone",
         R"(Material { diffuseColor 0.4 0.8 0.6 }
            Translation { translation -1.5 0 0 }
            DEF whole Cone { bottomRadius 1.2 height 2.6 }
            Rotation { rotation 1 0 0 -1.5707963 }
            Translation { translation 3 0 0 }
            DEF open Cone { parts SIDES bottomRadius 1.2 height 1.5 })",
         // The open one is turned: what was upward looks away from the viewer.
         box(-2.7f, -1.3f, -1.2f, 2.7f, 1.3f, 1.2f),
         {{-1.5f, 0, "whole"}, {-2.5f, 1, nullptr}, {1.5f, 1, "open"}, {2.5f, 1, nullptr}}},
        {"Cylinder",
         R"(Material { diffuseColor 0.8 0.7 0.4 }
            Translation { translation -1.5 0 0 }
            DEF whole Cylinder { radius 1.1 height 2.4 }
            Translation { translation 3 0 0 }
            DEF tube Cylinder { parts (SIDES | BOTTOM) radius 0.9 height 2.4 })",
         box(-2.6f, -1.2f, -1.1f, 2.4f, 1.2f, 1.1f),
         {{-1.5f, 0, "whole"}, {1.5f, 0, "tube"}, {0, 0, nullptr}}},
        {"Text3",
         R"(Material { diffuseColor 0.9 0.85 0.6 }
            Font { name "DejaVu Sans" size 1.2 }
            Translation { translation -2.2 0.4 0.5 }
            DEF words Text3 { string [ "Arbori", "um" ] parts ALL })",
         [] {
             return moved(textBox("DejaVu Sans", 1.2, {"Arbori", "um"}, 1),
                          KbVec3f(-2.2f, 0.4f, 0.5f));
         },
         {{-2, 0.8f, "words"},
          {-2, -0.6f, "words"},
          {1.3f, 0.8f, "words"},
          {1.3f, -0.9f, nullptr}}},
    };
}

} // namespace

const std::vector<NodeScene>& nodeScenes()
{
    static const std::vector<NodeScene> scenes = makeScenes();
    return scenes;
}
