#include "IoTest.h"

#include <arborium/actions/KsPath.h>
#include <arborium/base/KbFileHelper.h>
#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/nodes/KsVertexProperty.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

class Write : public IoTest {};

TEST_F(Write, keepsWhatWasRead)
{
    expectKept(ascii + R"(
DEF A Group {
    DEF B Cube {
        width 2
        depth 0.1
    }
    Rotation {
        rotation 0 0 1 1.57
    }
    Material {
        diffuseColor [ 1 0.5 0.25, 0 0 0 ]
        shininess []
    }
    USE B
}

Switch {
    whichChild -3
    USE A
    DEF "a b" Sphere {
        radius 3
    }
}

Text3 {
    string [ "a\nb", "q\"\\\"" ]
    parts (FRONT | BACK)
}

ClipPlane {
    plane 0.6 0.8 0 5
    on FALSE
}

Font {
    name "Tahoma"
}

MatrixTransform {
    matrix 0.2 0 0 0 0 0.2 0 0 0 0 1 0 -0.5 -0.5 0 1
}
)");
}

TEST_F(Write, anEmptySceneIsItsFirstLine)
{
    expectKept(ascii);
    const KsRef<KsNode> group(new KsGroup);
    EXPECT_EQ(written(group), ascii + "\nGroup {\n}\n");
}

TEST_F(Write, theRootOfAFileIsWrittenOnceSomethingWasSetOnIt)
{
    const KsRef<KsSeparator> root = parse("Cube { }");
    root->setName("Root");
    EXPECT_EQ(written(root), ascii + "\nDEF Root Separator {\n    Cube {\n    }\n}\n");
    root->setName("");
    const KsRef<KsGroup> above(new KsGroup);
    above->addChild(root);
    EXPECT_EQ(written(above),
              ascii + "\nGroup {\n    Separator {\n        Cube {\n        }\n    }\n}\n");
}

TEST_F(Write, sharedNodesAreWrittenOnceWithAName)
{
    const KsRef<KsGroup> group(new KsGroup);
    const KsRef<KsCube> cube(new KsCube);
    group->addChild(cube);
    group->addChild(cube);
    const std::string text = written(group);
    EXPECT_EQ(text, ascii + "\nGroup {\n    DEF +0 Cube {\n    }\n    USE +0\n}\n");
    const KsRef<KsSeparator> read = parse(text);
    ASSERT_TRUE(read) << errors;
    // Nobody named the node, so it has no name afterwards.
    auto* again = ksCast<KsGroup>(read->getChild(0));
    EXPECT_TRUE(again->getChild(0)->getName().isEmpty());
    EXPECT_EQ(again->getChild(0), again->getChild(1));
    expectKept(text);
}

TEST_F(Write, nodesOfTheSameNameAreToldApart)
{
    const KsRef<KsGroup> group(new KsGroup);
    const KsRef<KsCube> one(new KsCube), two(new KsCube), odd(new KsCube);
    one->setName("A");
    two->setName("A");
    odd->setName("A+0");
    one->width = 1.0f;
    two->width = 2.0f;
    odd->width = 3.0f;
    for (KsCube* each : {one.get(), two.get(), odd.get(), one.get(), two.get(), odd.get()})
        group->addChild(each);
    const std::string text = written(group);
    const KsRef<KsSeparator> read = parse(text);
    ASSERT_TRUE(read) << errors << text;
    auto* again = ksCast<KsGroup>(read->getChild(0));
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(ksCast<KsCube>(again->getChild(i))->width.getValue(), i % 3 + 1);
        EXPECT_EQ(again->getChild(i)->getName(), group->getChild(i)->getName());
    }
    expectKept(text);
}

TEST_F(Write, anyNameCanBeWritten)
{
    for (const char* name :
         {"plain", "with blank", "1digit", "\"quoted\"", "back\\slash", "{}", "a.b", "a+1",
          "\xe4\xf6", "DEF", "USE", "NULL", "#x", "-1", "[", "a=b", "a,b", "Cube"}) {
        const KsRef<KsGroup> group(new KsGroup);
        const KsRef<KsCube> cube(new KsCube), slave(new KsCube);
        cube->setName(name);
        slave->width.connectFrom(&cube->height);
        group->addChild(cube);
        group->addChild(cube);
        group->addChild(slave);
        const std::string text = written(group);
        const KsRef<KsSeparator> read = parse(text);
        ASSERT_TRUE(read) << errors << text;
        auto* again = ksCast<KsGroup>(read->getChild(0));
        EXPECT_EQ(again->getChild(0)->getName(), name);
        EXPECT_EQ(again->getChild(0), again->getChild(1));
        EXPECT_TRUE(ksCast<KsCube>(again->getChild(2))->width.isConnected());
        expectKept(text);
    }
}

// shows: KsField::setConnectionPrivate, KsField::isConnectionPrivate
TEST_F(Write, connectionsAreWrittenWhereTheirSourceIs)
{
    expectKept(ascii + R"(
Cube {
    width 7 = Source.height
}

DEF Source Cube {
    height 7
}

DEF Self Cube {
    width 3 = Self.height
    height 3
}
)");
    const KsRef<KsGroup> group(new KsGroup);
    const KsRef<KsCube> outside(new KsCube), slave(new KsCube);
    slave->width.connectFrom(&outside->height);
    outside->height = 4.0f;
    group->addChild(slave);
    EXPECT_EQ(written(group), ascii + "\nGroup {\n    Cube {\n        width 4\n    }\n}\n");
    group->addChild(outside);
    EXPECT_EQ(written(group), ascii + "\nGroup {\n    Cube {\n        width 4 = +0.height\n    }\n"
                                      "    DEF +0 Cube {\n        height 4\n    }\n}\n");
    expectKept(written(group));
    EXPECT_FALSE(slave->width.isConnectionPrivate());
    slave->width.setConnectionPrivate(true);
    EXPECT_TRUE(slave->width.isConnectionPrivate());
    EXPECT_EQ(written(group).find('='), std::string::npos);
    slave->width.disconnect();
    EXPECT_FALSE(slave->width.isConnectionPrivate());
}

TEST_F(Write, defaultFieldsAreLeftOut)
{
    const KsRef<KsCube> cube(new KsCube);
    EXPECT_EQ(written(cube), ascii + "\nCube {\n}\n");
    cube->width = cube->width.getValue(); // an equal value is a value that was set
    EXPECT_EQ(written(cube), ascii + "\nCube {\n    width 2\n}\n");
    cube->width.setDefault(true);
    EXPECT_EQ(written(cube), ascii + "\nCube {\n}\n");
}

TEST_F(Write, longListsGoOnInTheNextLine)
{
    std::string values;
    for (int i = 0; i < 60; ++i) values += (i ? ", " : "") + std::to_string(i * 1000);
    const KsRef<KsSeparator> root = parse("IndexedFaceSet { coordIndex [ " + values + " ] }");
    ASSERT_TRUE(root) << errors;
    const std::string text = written(root);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 9);
    std::size_t longest = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\n', at);
        longest = std::max(longest, end - at);
        at = end + 1;
    }
    EXPECT_LE(longest, 100u);
    expectKept(text);
}

TEST_F(Write, utf8IsUsedWhereLatin1DoesNotSuffice)
{
    const KsRef<KsText3> text(new KsText3);
    text->string = KbString("\xe4");
    EXPECT_EQ(written(text), ascii + "\nText3 {\n    string \"\xe4\"\n}\n");
    expectKept(written(text));
    text->setName("\xf6");
    text->string.set1Value(1, KbString(u"\u03bb"));
    const std::string utf8 = "#Arborium V2.1 ascii utf8\n\nDEF \"\xc3\xb6\" Text3 {\n    string [ "
                             "\"\xc3\xa4\", \"\xce\xbb\" ]\n}\n";
    EXPECT_EQ(written(text), utf8);
    expectKept(utf8);
}

TEST_F(Write, stringsOfAllCharactersComeBack)
{
    std::string bytes;
    for (int c = 1; c < 256; ++c) bytes += static_cast<char>(c);
    for (const std::string& each :
         {bytes, std::string("\\"), std::string("\\\\"), std::string("a\\\""),
          std::string("\"\"\""), std::string("\\n\\"), std::string("\r\n"), std::string("# { }")}) {
        const KsRef<KsText3> text(new KsText3);
        text->string = KbString(each);
        for (bool binary : {false, true}) {
            const KsRef<KsSeparator> read = parse(written(text, binary));
            ASSERT_TRUE(read) << errors;
            EXPECT_EQ(ksCast<KsText3>(read->getChild(0))->string[0], KbString(each));
        }
        std::u16string wide(each.begin(), each.end());
        for (char16_t& c : wide) c &= 0xff;
        text->string = KbString(wide + u"\u20ac");
        for (bool binary : {false, true}) {
            const KsRef<KsSeparator> read = parse(written(text, binary));
            ASSERT_TRUE(read) << errors;
            EXPECT_EQ(ksCast<KsText3>(read->getChild(0))->string[0], KbString(wide + u"\u20ac"));
        }
    }
}

TEST_F(Write, floatsComeBackToTheBit)
{
    std::mt19937 random(7);
    const KsRef<KsTranslation> node(new KsTranslation);
    for (int i = 0; i < 20000; ++i) {
        KbVec3f value;
        for (int j = 0; j < 3; ++j) {
            const std::uint32_t bits = static_cast<std::uint32_t>(random());
            std::memcpy(&value[j], &bits, 4);
            if (!std::isfinite(value[j])) value[j] = -0.0f;
        }
        node->translation = value;
        KsOutput out;
        node->translation.writeValue(&out);
        KsInput in;
        in.setBuffer(out.getBuffer().data(), out.getBuffer().size());
        KsSFVec3f read;
        ASSERT_TRUE(read.readValue(&in)) << out.getBuffer();
        ASSERT_EQ(std::memcmp(read.getValue().getValue(), value.getValue(), 12), 0)
            << out.getBuffer();
    }
}

// shows: KsField::readValue, KsField::writeValue
TEST_F(Write, rotationsAndPlanesAreStableWhateverTheyAre)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> number(-4, 4);
    const auto textOf = [](const KsField& field) {
        KsOutput out;
        field.writeValue(&out);
        return out.getBuffer();
    };
    for (int i = 0; i < 2000; ++i) {
        const KbVec3f axis(number(random), number(random), number(random));
        const KsSFRotation rotation(KbRotation(axis, number(random)));
        const KsSFPlane plane(KbPlane(axis, number(random)));
        const std::string rotationText = textOf(rotation), planeText = textOf(plane);
        KsInput in;
        in.setBuffer(rotationText.data(), rotationText.size());
        KsSFRotation readRotation;
        ASSERT_TRUE(readRotation.readValue(&in));
        EXPECT_TRUE(readRotation.getValue().equals(rotation.getValue(), 1e-6f));
        EXPECT_EQ(textOf(readRotation), rotationText);
        in.setBuffer(planeText.data(), planeText.size());
        KsSFPlane readPlane;
        ASSERT_TRUE(readPlane.readValue(&in));
        EXPECT_TRUE(readPlane.getValue().getNormal().equals(plane.getValue().getNormal(), 1e-6f));
        EXPECT_EQ(textOf(readPlane), planeText);
    }
    // Small components beside a large one, where rounding shows first.
    for (const char* text : {"23 0.3 0.3 5", "8e-3 23 3 3", "1 1e-20 1 6.28", "1e-30 1 0 -400",
                             "0.9994775 0.010618619 0.030528339 3"}) {
        KsSFRotation first, second;
        KsInput in;
        in.setBuffer(text, std::strlen(text));
        ASSERT_TRUE(first.readValue(&in));
        const std::string once = textOf(first);
        in.setBuffer(once.data(), once.size());
        ASSERT_TRUE(second.readValue(&in));
        EXPECT_EQ(textOf(second), once) << text;
        EXPECT_EQ(first.getValue(), second.getValue()) << text;
    }
    EXPECT_EQ(textOf(KsSFRotation()), "0 0 1 0");
    EXPECT_EQ(textOf(KsSFRotation(KbRotation(KbVec3f(1, 0, 0), 0.3f))), "1 0 0 0.3");
    EXPECT_EQ(textOf(KsSFPlane(KbPlane(KbVec3f(0, 1, 0), -2.5f))), "0 1 0 -2.5");
}

TEST_F(Write, numbersThatAreNotFiniteBecomeSome)
{
    const KsRef<KsCube> cube(new KsCube);
    cube->width = std::numeric_limits<float>::infinity();
    cube->height = -std::numeric_limits<float>::infinity();
    cube->depth = std::numeric_limits<float>::quiet_NaN();
    for (bool binary : {false, true}) {
        const KsRef<KsSeparator> read = parse(written(cube, binary));
        ASSERT_TRUE(read) << errors;
        EXPECT_EQ(written(read), ascii + "\nCube {\n    width 3.4028235e+38\n    height "
                                         "-3.4028235e+38\n    depth 0\n}\n");
    }
}

// ---- every class ------------------------------------------------------------------------------

namespace {

/// Gives a field some value that is not its default.
class SomeValues {
public:
    void set(KsField* field)
    {
        if (auto* f = as<KsSFBool>(field)) f->setValue(!f->getValue());
        if (auto* f = as<KsSFFloat>(field)) f->setValue(number());
        if (auto* f = as<KsSFInt32>(field)) f->setValue(static_cast<int>(m_random()));
        if (auto* f = as<KsSFString>(field)) f->setValue(anyText());
        if (auto* f = as<KsSFFilePathString>(field)) f->setValue(KbString());
        if (auto* f = as<KsSFName>(field)) f->setValue(KbName(text()));
        if (auto* f = as<KsSFVec2i32>(field)) f->setValue(static_cast<int>(m_random()), -5);
        if (auto* f = as<KsSFVec2f>(field)) f->setValue(number(), number());
        if (auto* f = as<KsSFVec3f>(field)) f->setValue(vector());
        if (auto* f = as<KsSFColor>(field)) f->setValue(KbColor(vector()));
        if (auto* f = as<KsSFRotation>(field)) f->setValue(KbRotation(vector(), number()));
        if (auto* f = as<KsSFPlane>(field)) f->setValue(KbPlane(vector(), number()));
        if (auto* f = as<KsSFMatrix>(field)) {
            KbMatrix matrix;
            for (int i = 0; i < 16; ++i) matrix[i / 4][i % 4] = number();
            f->setValue(matrix);
        }
        if (auto* f = as<KsSFEnum>(field)) {
            const KsEnumData* enums = f->getEnums();
            f->setValue(enums ? enums->values[m_random() % enums->values.size()] : 3);
        }
        if (auto* f = as<KsSFBitMask>(field)) {
            int bits = 0;
            for (int value : f->getEnums()->values)
                if (m_random() % 2) bits |= value;
            f->setValue(bits);
        }
        if (auto* f = as<KsSFNode>(field)) {
            const KsRef<KsVertexProperty> node(new KsVertexProperty);
            node->vertex.set1Value(1, vector());
            // The parts of a kit have types of their own.
            if (!f->getContainer()->asNode()->getNodekitCatalog()) f->setValue(node);
        }
        several<KsMFString>(field, [this] { return anyText(); });
        several<KsMFFloat>(field, [this] { return number(); });
        several<KsMFInt32>(field, [this] { return static_cast<int>(m_random()); });
        several<KsMFColor>(field, [this] { return KbColor(vector()); });
        several<KsMFVec2f>(field, [this] { return KbVec2f(number(), number()); });
        several<KsMFVec3f>(field, [this] { return vector(); });
    }

private:
    template <class Field> static Field* as(KsField* field)
    {
        return field->getTypeId() == Field::getClassTypeId() ? static_cast<Field*>(field) : nullptr;
    }
    template <class Field, class Make> void several(KsField* field, Make make)
    {
        auto* f = as<Field>(field);
        if (!f) return;
        std::vector<typename Field::Value> values;
        for (unsigned n = m_random() % 4; n > 0; --n) values.push_back(make());
        f->assign(values);
    }
    float number() { return std::uniform_real_distribution<float>(-100, 100)(m_random); }
    KbVec3f vector() { return {number(), number(), number()}; }
    KbString text()
    {
        static const char* const texts[] = {"", "a", "x y", "\"\\\n", "\xe4"};
        return texts[m_random() % 5];
    }
    KbString anyText()
    {
        return m_random() % 5 ? text() : KbString(u"\u03b1\u03c9 \u263a\xd83d\xde00");
    }
    std::mt19937 m_random{3};
};

} // namespace

// shows: KsType::forEach, KsField::isSame, KsField::readValue, KsField::writeValue
TEST_F(Write, everyFieldOfEveryClassComesBackInBothForms)
{
    std::vector<KsType> types;
    KsType::forEach([&types](KsType type) {
        if (type.isDerivedFrom(KsNode::getClassTypeId()) && type.canCreateInstance())
            types.push_back(type);
    });
    EXPECT_GT(types.size(), 30u);
    SomeValues some;
    for (KsType type : types) {
        SCOPED_TRACE(type.getName().getString());
        const KsRef<KsNode> plain(static_cast<KsNode*>(type.createInstance()));
        ASSERT_TRUE(plain);
        expectKept(written(plain));
        for (int round = 0; round < 20; ++round) {
            const KsRef<KsNode> node(static_cast<KsNode*>(type.createInstance()));
            KsFieldList fields;
            node->getFields(fields);
            for (const KsFieldEntry& each : fields) some.set(each.field);
            const std::string text = written(node);
            expectKept(text);
            const KsRef<KsSeparator> read = parse(text);
            ASSERT_TRUE(read) << errors << text;
            KsFieldList again;
            read->getChild(0)->getFields(again);
            ASSERT_EQ(again.size(), fields.size());
            for (std::size_t i = 0; i < fields.size(); ++i) {
                const KsType kind = fields[i].field->getTypeId();
                // These come back with the last bits of their numbers changed.
                if (kind == KsSFRotation::getClassTypeId() || kind == KsSFPlane::getClassTypeId())
                    continue;
                if (const auto* mine = ksCast<KsSFNode>(fields[i].field)) {
                    const KsNode* its = static_cast<KsSFNode*>(again[i].field)->getValue();
                    EXPECT_TRUE(mine->getValue() ? mine->getValue()->fieldsAreEqual(its) : !its);
                    continue;
                }
                EXPECT_TRUE(fields[i].field->isSame(*again[i].field)) << fields[i].name << text;
            }
        }
    }
}

TEST_F(Write, partsOfKitsStandInTheirFields)
{
    expectKept(ascii + R"(
BaseKit {
    geomSeparator Separator {
        Cube {
            width 3
        }
    }
}
)");
}

// ---- files ------------------------------------------------------------------------------------

// shows: KsOutput, KsOutput::openFile, KsOutput::closeFile
TEST_F(Write, writesAFileInOneStep)
{
    const std::string path = file("out.arb", "the old content");
    const KsRef<KsSeparator> root = parse("Cube { width 3 }");
    KsWriteAction action;
    ASSERT_TRUE(action.getOutput()->openFile(KbString(path)));
    action.apply(root);
    std::string content;
    ASSERT_EQ(KbFileHelper::readWholeFile(KbString(path), 1000, content), KbFileHelper::Status::Ok);
    EXPECT_EQ(content, "the old content");
    EXPECT_TRUE(action.getOutput()->closeFile());
    EXPECT_TRUE(action.getOutput()->closeFile()) << "none is open";
    ASSERT_EQ(KbFileHelper::readWholeFile(KbString(path), 1000, content), KbFileHelper::Status::Ok);
    EXPECT_EQ(content, written(root));
    {
        KsOutput out; // writes its file at its end
        ASSERT_TRUE(out.openFile(KbString(path)));
    }
    ASSERT_EQ(KbFileHelper::readWholeFile(KbString(path), 1000, content), KbFileHelper::Status::Ok);
    EXPECT_EQ(content, ascii);
    ASSERT_TRUE(action.getOutput()->openFile(KbString(path)));
    action.apply(root);
    ASSERT_TRUE(action.getOutput()->closeFile());
    KsInput in;
    ASSERT_TRUE(in.openFile(KbString(path)));
    const KsRef<KsSeparator> again(KsDB::readAll(&in));
    ASSERT_TRUE(again);
    EXPECT_EQ(written(again), written(root));
}

TEST_F(Write, refusesWhatCannotBeWritten)
{
    ExpectedMessages messages;
    messages.expect("KsOutput::openFile", "this is a directory");
    messages.expect("KsOutput::openFile", "its directory does not exist");
    messages.expect("KsOutput::openFile", "a file needs a name");
    messages.expect("KsOutput::openFile", "this is a device or a pipe");
    KsOutput out;
    EXPECT_FALSE(out.openFile(KbString(folder().string())));
    EXPECT_FALSE(out.openFile(KbString((folder() / "no/x.arb").string())));
    EXPECT_FALSE(out.openFile(""));
    EXPECT_FALSE(out.openFile("/dev/null"));
}

TEST_F(Write, onlyThePathIsWritten)
{
    const KsRef<KsSeparator> root = parse("Group { Cube { } Sphere { } Cone { } }");
    const KsRef<KsPath> path(new KsPath(root->getChild(0)));
    path->append(ksCast<KsGroup>(root->getChild(0))->getChild(1));
    KsWriteAction action;
    action.apply(path.get());
    const std::string text = action.getOutput()->getBuffer();
    EXPECT_NE(text.find("Sphere"), std::string::npos);
    EXPECT_EQ(text.find("Cone"), std::string::npos);
    const KsRef<KsSeparator> again = parse(text);
    EXPECT_TRUE(again) << errors << text;
}

// shows: KsWriteAction, KsWriteAction::getOutput, KsOutput::getBuffer
TEST_F(Write, severalScenesGoIntoOneOutput)
{
    const KsRef<KsGroup> group(new KsGroup);
    const KsRef<KsCube> named(new KsCube), shared(new KsCube);
    named->setName("Named");
    for (KsCube* each : {new KsCube, named.get(), shared.get(), shared.get()})
        group->addChild(each);
    KsWriteAction action;
    action.apply(group);
    action.apply(group);
    const std::string& text = action.getOutput()->getBuffer();
    // What the first scene gave a name is used by it; what it did not is written again.
    EXPECT_EQ(text, ascii + R"(
Group {
    Cube {
    }
    DEF Named Cube {
    }
    DEF +0 Cube {
    }
    USE +0
}

Group {
    Cube {
    }
    USE Named
    USE +0
    USE +0
}
)");
    EXPECT_TRUE(parse(text)) << errors;
    KsOutput binary;
    binary.setBinary(true);
    KsWriteAction both(&binary);
    both.apply(group);
    both.apply(group);
    EXPECT_TRUE(parse(binary.getBuffer())) << errors;
}

TEST_F(Write, aConnectionToAnEarlierSceneIsLeftOutWithItsValueKept)
{
    const KsRef<KsTranslation> from(new KsTranslation), to(new KsTranslation);
    from->translation = KbVec3f(1, 2, 3);
    to->translation.connectFrom(&from->translation);
    KsWriteAction action;
    action.apply(from);
    action.apply(to);
    const KsRef<KsSeparator> root = parse(action.getOutput()->getBuffer());
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(static_cast<KsTranslation*>(root->getChild(1))->translation, KbVec3f(1, 2, 3));
}

TEST_F(Write, pathsOfAListAreWrittenOneAfterTheOther)
{
    const KsRef<KsSeparator> scene =
        parse("DEF Top Separator { DEF A Group { Cube { } } DEF B Group { Sphere { } } }");
    ASSERT_TRUE(scene) << errors;
    auto* top = static_cast<KsSeparator*>(scene->getChild(0));
    KsPathList paths;
    for (int i : {0, 1}) {
        paths.append(new KsFullPath(top));
        paths[i]->append(top->getChild(i), i);
    }
    for (const bool binary : {false, true}) {
        KsOutput out;
        out.setBinary(binary);
        KsWriteAction(&out).apply(paths);
        const KsRef<KsSeparator> root = parse(out.getBuffer());
        ASSERT_TRUE(root) << errors << out.getBuffer();
        ASSERT_EQ(root->getNumChildren(), 2);
        for (int i : {0, 1}) {
            auto* part = static_cast<KsSeparator*>(root->getChild(i));
            EXPECT_EQ(part->getName(), KbName("Top"));
            // The group A affects the state behind it, the cube in it does not.
            ASSERT_EQ(part->getNumChildren(), i + 1);
            auto* last = static_cast<KsGroup*>(part->getChild(i));
            EXPECT_EQ(last->getName(), KbName(i == 0 ? "A" : "B"));
            EXPECT_EQ(last->getNumChildren(), 1);
            if (i == 0) continue;
            EXPECT_EQ(static_cast<KsGroup*>(part->getChild(0))->getNumChildren(), 0);
        }
    }
}

TEST_F(Write, whatStandsBesideAPathAndBelowItIsWrittenInBothPlaces)
{
    const KsRef<KsSeparator> scene =
        parse("Separator { DEF A Cube { } Separator { USE A Sphere { } } }");
    ASSERT_TRUE(scene) << errors;
    auto* top = static_cast<KsSeparator*>(scene->getChild(0));
    const KsRef<KsPath> path(new KsFullPath(top));
    path->append(top->getChild(1), 1);
    for (const bool binary : {false, true}) {
        KsOutput out;
        out.setBinary(binary);
        KsWriteAction(&out).apply(path.get());
        const KsRef<KsSeparator> root = parse(out.getBuffer());
        ASSERT_TRUE(root) << errors << out.getBuffer();
        auto* read = static_cast<KsSeparator*>(root->getChild(0));
        ASSERT_EQ(read->getNumChildren(), 2);
        auto* below = static_cast<KsSeparator*>(read->getChild(1));
        ASSERT_EQ(below->getNumChildren(), 2);
        EXPECT_EQ(below->getChild(0), read->getChild(0));
    }
}
