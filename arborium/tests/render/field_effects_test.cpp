// Each field of each class of nodes does something: another value is seen in the picture, in the box
// or by a pick.

#include "PictureTest.h"
#include "node_scenes.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/kits/KsBaseKit.h>
#include <arborium/nodes/KsFile.h>

#include <cstring>
#include <ostream>
#include <set>
#include <vector>

namespace {

struct Effects {
    const char* type;
    /// A scene with a node of this type; null for that of the references.
    const char* content;
    /// Fields with other values than they have in the scene.
    std::vector<const char*> seen;
    /// The same of fields that say something to programs only.
    std::vector<const char*> unseen;
};
void PrintTo(const Effects& effects, std::ostream* out) { *out << effects.type; }

const std::vector<Effects>& allEffects()
{
    const char* const square = R"(Coordinate3 { point [ -2 -1 0, 1 -1 0, 2 1 0, -1 1 0, -2 0 0 ] }
                                  Material { diffuseColor 0.4 0.7 0.9 }
                                  )";
    static const std::string faces = std::string(square) + "FaceSet { numVertices 4 }";
    static const std::string indexed =
        std::string(square) + "IndexedFaceSet { coordIndex [ 0, 1, 2, -1 ] }";
    static const std::string lines =
        std::string(square) + "IndexedLineSet { coordIndex [ 0, 1, 2, -1 ] }";
    const char* const triangle =
        "vertexProperty VertexProperty { vertex [ -1 -1 0, 0 -1 0, -1 1 0, 0 0 0 ] }";
    static const std::vector<Effects> table{
        {"Group", nullptr, {}, {}},
        {"Separator", nullptr, {}, {}},
        {"Switch", nullptr, {"whichChild 0"}, {}},
        {"File", nullptr, {"name \"\""}, {}}, // and read anew
        {"Translation", nullptr, {"translation 0 0 0"}, {}},
        {"Rotation", nullptr, {"rotation 0 0 1 0"}, {}},
        {"Scale", nullptr, {"scaleFactor 1 1 1"}, {}},
        {"Transform",
         nullptr,
         {"translation 0 0 0", "rotation 0 0 1 0", "scaleFactor 1 1 1",
          "scaleOrientation 0 0 1 0.5", "center 0 0 0"},
         {}},
        {"MatrixTransform", nullptr, {"matrix 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1"}, {}},
        {"Material",
         R"(DirectionalLight { direction -1 -1 -0.6 }
            Material { specularColor 0.5 0.5 0.5 }
            Sphere { radius 2 })",
         {"ambientColor 1 1 1", "diffuseColor 1 0 0", "specularColor 1 1 1",
          "emissiveColor 0.4 0 0", "shininess 0.9", "transparency 0.5"},
         {}},
        {"BaseColor", nullptr, {"rgb 0 0 1"}, {}},
        {"LightModel", nullptr, {"model BASE_COLOR"}, {}},
        {"DirectionalLight",
         nullptr,
         {"on FALSE", "intensity 0.2", "color 0 0 1", "direction 1 0 0"},
         {}},
        {"PointLight", nullptr, {"on FALSE", "intensity 0.2", "color 1 0 0", "location 2 2 2"}, {}},
        {"ClipPlane", nullptr, {"plane 0 1 0 0", "on FALSE"}, {}},
        {"PickStyle", nullptr, {"style UNPICKABLE"}, {}},
        {"ShapeHints",
         nullptr,
         {"vertexOrdering CLOCKWISE", "shapeType UNKNOWN_SHAPE_TYPE", "creaseAngle 3"},
         {"faceType UNKNOWN_FACE_TYPE"}},
        {"Texture2",
         R"(Texture2 { filename "tile.png" }
            FaceSet {
                vertexProperty VertexProperty {
                    vertex [ -2 -1.5 0, 2 -1.5 0, 2 1.5 0, -2 1.5 0 ]
                    texCoord [ -0.7 -0.7, 1.7 -0.7, 1.7 1.7, -0.7 1.7 ]
                }
            })",
         {"filename \"\"", "wrapS CLAMP", "wrapT CLAMP"},
         {}},
        {"EventCallback", nullptr, {}, {}},
        {"OrthographicCamera",
         nullptr,
         {"position 1 6 0", "orientation 1 0 0 -1.2", "nearDistance 7", "farDistance 6",
          "height 8"},
         {"aspectRatio 3", "focalDistance 1"}},
        {"PerspectiveCamera",
         nullptr,
         {"position 1 6 0", "orientation 1 0 0 -1.2", "nearDistance 5.8", "farDistance 6",
          "heightAngle 1"},
         {"aspectRatio 3", "focalDistance 1"}},
        {"Font", nullptr, {"name \"DejaVu Sans\"", "size 0.9"}, {}},
        {"Text3",
         nullptr,
         {"string \"other\"", "spacing 1.5", "justification RIGHT", "parts FRONT"},
         {}},
        {"Cube", nullptr, {"width 1", "height 2", "depth 1"}, {}},
        {"Sphere", nullptr, {"radius 1"}, {}},
        {"Cone", nullptr, {"parts BOTTOM", "bottomRadius 0.5", "height 1"}, {}},
        {"Cylinder", nullptr, {"parts TOP", "radius 0.5", "height 1"}, {}},
        {"Coordinate3", nullptr, {"point [ -1 -1 0, 0 -1 0, -1 1 0 ]"}, {}},
        {"Normal", nullptr, {"vector [ 0 1 0.2 ]"}, {}},
        {"VertexProperty",
         R"(Material { diffuseColor 1 1 1 }
            Texture2 { filename "tile.png" }
            VertexProperty {
                vertex [ -2 -1.5 0, 2 -1.5 0, 2 1.5 0, -2 1.5 0 ]
                normal [ 0.2 0.3 1 ]
                texCoord [ 0 0, 1.5 0, 1 1, 0 1 ]
            }
            FaceSet { })",
         {"vertex [ -1 -1 0, 0 -1 0, 0 1 0, -1 1 0 ]", "normal [ 0 1 0.2 ]",
          "texCoord [ 0 0, 4 0, 4 4, 0 4 ]"},
         {}},
        {"FaceSet", faces.c_str(), {"startIndex 1", "numVertices 3", triangle}, {}},
        {"IndexedFaceSet", indexed.c_str(), {"coordIndex [ 0, 1, 3, -1 ]", triangle}, {}},
        {"IndexedLineSet", lines.c_str(), {"coordIndex [ 0, 1, 3, -1 ]", triangle}, {}},
    };
    return table;
}

class FieldEffects : public PictureTest, public testing::WithParamInterface<Effects> {
protected:
    struct Sight {
        QImage picture;
        KbBox3f box;
        std::vector<KbVec3f> hits;
    };
    static KsRef<KsSeparator> makeScene()
    {
        std::string content = GetParam().content ? GetParam().content : "";
        for (const NodeScene& each : nodeScenes())
            if (content.empty() && !std::strcmp(each.type, GetParam().type)) content = each.content;
        return read(content);
    }
    /// Sets a field of all nodes of the type.
    static void change(KsNode* scene, const char* fieldAndValue)
    {
        KsSearchAction search;
        search.setType(KsType::fromName(GetParam().type), false);
        search.setInterest(KsSearchAction::ALL);
        search.setSearchingAll(true);
        search.apply(scene);
        ASSERT_GT(search.getPaths().getLength(), 0);
        for (int i = 0; i < search.getPaths().getLength(); ++i) {
            KsNode* node = search.getPaths()[i]->getTail();
            ASSERT_TRUE(node->set(fieldAndValue));
            if (auto* file = ksCast<KsFile>(node)) file->load();
        }
    }
    static Sight look(KsNode* scene)
    {
        Sight sight;
        if (KsGLContext::isAvailable()) sight.picture = pictureOf(scene, QSize(64, 48));
        const KbViewportRegion window(64, 48);
        KsGetBoundingBoxAction boxes(window);
        boxes.apply(scene);
        sight.box = boxes.getBoundingBox();
        for (float y = -1.8f; y < 2; y += 0.3f)
            for (float x = -2.7f; x < 3; x += 0.3f) {
                KsRayPickAction pick(window);
                pick.setRay(KbVec3f(x, y, 10), KbVec3f(0, 0, -1));
                pick.apply(scene);
                if (pick.getPickedPoint()) sight.hits.push_back(pick.getPickedPoint()->getPoint());
            }
        return sight;
    }
    static bool isSame(const Sight& a, const Sight& b)
    {
        return a.picture == b.picture && a.box == b.box && a.hits == b.hits;
    }
};

} // namespace

// shows: KsSwitch, KsFile, KsTranslation, KsRotation, KsScale, KsTransform, KsMatrixTransform,
// KsMaterial, KsBaseColor, KsLightModel, KsTexture2, KsFont, KsShapeHints, KsPickStyle,
// KsClipPlane, KsDirectionalLight, KsPointLight, KsOrthographicCamera, KsPerspectiveCamera,
// KsCoordinate3, KsNormal, KsVertexProperty, KsFaceSet, KsIndexedFaceSet, KsIndexedLineSet, KsCube,
// KsSphere, KsCone, KsCylinder, KsText3
TEST_P(FieldEffects, areSeenInThePictureInTheBoxOrByAPick)
{
    if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    const KsRef<KsSeparator> scene = makeScene();
    ASSERT_TRUE(scene);
    const Sight before = look(scene);
    EXPECT_TRUE(isSame(before, look(scene)));
    for (const bool isSeen : {true, false})
        for (const char* each : isSeen ? GetParam().seen : GetParam().unseen) {
            const KsRef<KsSeparator> other = makeScene();
            ASSERT_TRUE(other);
            EXPECT_TRUE(isSame(before, look(other)));
            change(other, each); // after it was drawn: what was kept of it must go
            EXPECT_EQ(isSame(before, look(other)), !isSeen) << each;
        }
}

INSTANTIATE_TEST_SUITE_P(Of, FieldEffects, testing::ValuesIn(allEffects()),
                         [](const auto& each) { return std::string(each.param.type); });

class FieldTable : public PictureTest {};

TEST_F(FieldTable, coversEachFieldOfEachClassThatIsNoKit)
{
    std::set<std::string> fields, changed;
    KsType::forEach([&fields](KsType type) {
        if (!type.isDerivedFrom(KsNode::getClassTypeId()) || !type.canCreateInstance() ||
            type.isDerivedFrom(KsBaseKit::getClassTypeId()))
            return;
        const KsRef<KsNode> node(static_cast<KsNode*>(type.createInstance()));
        KsFieldList list;
        node->getFields(list);
        for (const KsFieldEntry& each : list)
            fields.insert(type.getName().getString() + std::string(".") + each.name.getString());
    });
    for (const Effects& row : allEffects())
        for (const auto* list : {&row.seen, &row.unseen})
            for (const char* each : *list)
                changed.insert(row.type + std::string(".") +
                               std::string(each, std::strcspn(each, " ")));
    EXPECT_EQ(changed, fields);
}
