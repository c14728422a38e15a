// What the fields of each class of nodes hold before anybody sets them, and the names that they and
// their choices have in files.

#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/kits/KsBaseKit.h>
#include <arborium/nodes/KsSeparator.h>

#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Defaults {
    const char* type;
    const char* fields; ///< As they are written, in the order of their writing.
};
void PrintTo(const Defaults& defaults, std::ostream* out) { *out << defaults.type; }

const char* const s_camera = "position 0 0 1 orientation 0 0 1 0 aspectRatio 1 nearDistance 1 "
                             "farDistance 10 focalDistance 5 ";

const std::vector<Defaults>& allDefaults()
{
    static const std::string orthographic = std::string(s_camera) + "height 2";
    static const std::string perspective = std::string(s_camera) + "heightAngle 0.785398";
    static const std::vector<Defaults> table{
        {"Group", ""},
        {"Separator", ""},
        {"Switch", "whichChild -1"},
        {"File", "name \"\""},
        {"Translation", "translation 0 0 0"},
        {"Rotation", "rotation 0 0 1 0"},
        {"Scale", "scaleFactor 1 1 1"},
        {"Transform", "translation 0 0 0 rotation 0 0 1 0 scaleFactor 1 1 1 "
                      "scaleOrientation 0 0 1 0 center 0 0 0"},
        {"MatrixTransform", "matrix 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1"},
        {"Material", "ambientColor 0.2 0.2 0.2 diffuseColor 0.8 0.8 0.8 specularColor 0 0 0 "
                     "emissiveColor 0 0 0 shininess 0.2 transparency 0"},
        {"BaseColor", "rgb 0.8 0.8 0.8"},
        {"LightModel", "model PHONG"},
        {"DirectionalLight", "on TRUE intensity 1 color 1 1 1 direction 0 0 -1"},
        {"PointLight", "on TRUE intensity 1 color 1 1 1 location 0 0 1"},
        {"ClipPlane", "plane 1 0 0 0 on TRUE"},
        {"PickStyle", "style SHAPE"},
        {"ShapeHints", "vertexOrdering UNKNOWN_ORDERING shapeType UNKNOWN_SHAPE_TYPE "
                       "faceType CONVEX creaseAngle 0.5"},
        {"Texture2", "filename \"\" wrapS REPEAT wrapT REPEAT"},
        {"EventCallback", ""},
        {"OrthographicCamera", orthographic.c_str()},
        {"PerspectiveCamera", perspective.c_str()},
        {"Font", "name \"defaultFont\" size 10"},
        {"Text3", "string \"\" spacing 1 justification LEFT parts FRONT"},
        {"Cube", "width 2 height 2 depth 2"},
        {"Sphere", "radius 1"},
        {"Cone", "parts ALL bottomRadius 1 height 2"},
        {"Cylinder", "parts ALL radius 1 height 2"},
        {"Coordinate3", "point 0 0 0"},
        {"Normal", "vector []"},
        {"VertexProperty", "vertex [] normal [] texCoord []"},
        {"FaceSet", "vertexProperty NULL startIndex 0 numVertices -1"},
        {"IndexedFaceSet", "vertexProperty NULL coordIndex []"},
        {"IndexedLineSet", "vertexProperty NULL coordIndex []"},
    };
    return table;
}

class DefaultsTest : public testing::Test {
protected:
    void SetUp() override { KsDB::init(); }
    void TearDown() override { KsDB::finish(); }
};
class NodeDefaults : public DefaultsTest, public testing::WithParamInterface<Defaults> {};

/// What stands between the braces of a node, its words separated by single blanks.
std::string fieldsOf(KsNode* node)
{
    KsWriteAction action;
    action.apply(node);
    const std::string all = action.getOutput()->getBuffer();
    const std::size_t open = all.find('{'), close = all.rfind('}');
    std::istringstream words(all.substr(open + 1, close - open - 1));
    std::string result, word;
    while (words >> word) result += (result.empty() ? "" : " ") + word;
    return result;
}

} // namespace

// shows: KsGroup, KsSeparator, KsSwitch, KsFile, KsTranslation, KsRotation, KsScale, KsTransform,
// KsMatrixTransform, KsMaterial, KsBaseColor, KsLightModel, KsTexture2, KsFont, KsShapeHints,
// KsPickStyle, KsClipPlane, KsDirectionalLight, KsPointLight, KsOrthographicCamera,
// KsPerspectiveCamera, KsEventCallback, KsCoordinate3, KsNormal, KsVertexProperty, KsFaceSet,
// KsIndexedFaceSet, KsIndexedLineSet, KsCube, KsSphere, KsCone, KsCylinder, KsText3
TEST_P(NodeDefaults, areWrittenOnlyIfTheyWereSet)
{
    const KsType type = KsType::fromName(GetParam().type);
    ASSERT_TRUE(type.canCreateInstance());
    const KsRef<KsNode> node(static_cast<KsNode*>(type.createInstance()));
    ASSERT_TRUE(node);
    EXPECT_EQ(node->getRefCount(), 1) << "held by nobody else";
    EXPECT_TRUE(node->hasDefaultValues());
    EXPECT_EQ(fieldsOf(node), "");
    KsFieldList fields;
    node->getFields(fields);
    for (const KsFieldEntry& each : fields) each.field->setDefault(false);
    EXPECT_EQ(fieldsOf(node), GetParam().fields);

    // What is written is read as the same.
    const KsRef<KsNode> again(static_cast<KsNode*>(type.createInstance()));
    EXPECT_TRUE(again->set(GetParam().fields));
    EXPECT_TRUE(again->fieldsAreEqual(node));
}

INSTANTIATE_TEST_SUITE_P(Of, NodeDefaults, testing::ValuesIn(allDefaults()),
                         [](const auto& each) { return std::string(each.param.type); });

TEST_F(DefaultsTest, coverEachClassThatIsNoKit)
{
    std::set<std::string> classes, told;
    KsType::forEach([&classes](KsType type) {
        if (type.isDerivedFrom(KsNode::getClassTypeId()) && type.canCreateInstance() &&
            !type.isDerivedFrom(KsBaseKit::getClassTypeId()))
            classes.insert(type.getName().getString());
    });
    for (const Defaults& each : allDefaults()) told.insert(each.type);
    EXPECT_EQ(told, classes);
}
