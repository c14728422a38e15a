// Nodes that a program writes itself, with a text of their own between the braces.

#include "IoTest.h"

#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsSphere.h>

#include <limits>
#include <utility>
#include <vector>

namespace {

/// Holds numbers, "( 1 2 3 )" in front of its fields, and cubes behind them.
class TestShelf : public KsNode {
    KS_NODE_HEADER(TestShelf);

public:
    TestShelf() : m_children(this)
    {
        KsInstanceBuilder build(classRecord, this);
        build.field("label", label, "");
    }
    KsSFString label;
    std::vector<std::int32_t> numbers;

    bool isGroup() const override { return true; }
    KsChildList* getChildren() const override { return &m_children; }

    void write(KsWriteAction* action) override
    {
        KsOutput* out = action->getOutput();
        if (out->getStage() == KsOutput::COUNT_REFS) {
            addWriteReference(out);
            if (!hasMultipleWriteRefs(out)) m_children.traverse(action);
            return;
        }
        if (writeHeader(out, isGroup())) return;
        if (out->isBinary()) out->write(static_cast<std::int32_t>(numbers.size()));
        out->writeChar('(');
        for (std::int32_t each : numbers) out->write(each);
        out->writeWord(")");
        getFieldData()->write(out, this);
        std::int32_t count = 0;
        for (int i = 0; i < m_children.getLength(); ++i) count += m_children[i]->shouldWrite(out);
        if (out->isBinary()) out->write(count);
        m_children.traverse(action);
        writeFooter(out);
    }
    bool readInstance(KsInput* in, unsigned short flags) override
    {
        std::int32_t number = 0;
        if (in->isBinary()) {
            std::int32_t count = 0;
            if (!in->readCount(count, 4, 1000)) return false;
            for (; count > 0; --count)
                if (in->read(number)) numbers.push_back(number);
            KbName bracket;
            if (!in->readWord(bracket)) return false;
        } else if (in->expectChar('(', "the numbers of a shelf")) {
            while (!in->takeChar(')')) {
                if (!in->read(number)) return false;
                if (number < 0) in->addError("a number below zero");
                numbers.push_back(number);
            }
        } else {
            return false;
        }
        if (!KsNode::readInstance(in, flags)) return false;
        const bool hasChildren = !in->isBinary() || (flags & 2);
        std::int32_t count = in->isBinary() ? 0 : 1000;
        if (hasChildren && in->isBinary() && !in->readCount(count, 8, 1000)) return false;
        while (hasChildren && count-- > 0) {
            KsBase* child = nullptr;
            if (!KsBase::read(in, child, KsCube::getClassTypeId())) return false;
            if (!child) break;
            m_children.append(static_cast<KsNode*>(child));
        }
        return true;
    }

protected:
    ~TestShelf() override = default;

private:
    mutable KsChildList m_children;
};
KS_NODE_SOURCE(TestShelf, KsNode)

/// Writes the whole scene aside whenever it is met itself.
class TestWitness : public KsNode {
    KS_NODE_HEADER(TestWitness);

public:
    TestWitness() { KsInstanceBuilder build(classRecord, this); }
    KsNode* scene = nullptr;
    std::vector<std::string> seen;

    void write(KsWriteAction* action) override
    {
        if (scene) {
            KsNode* const whole = std::exchange(scene, nullptr);
            KsOutput aside;
            KsWriteAction(&aside).apply(whole);
            seen.push_back(aside.getBuffer());
            scene = whole;
        }
        KsNode::write(action);
    }
};
KS_NODE_SOURCE(TestWitness, KsNode)

class OwnNode : public IoTest {
protected:
    OwnNode()
    {
        TestShelf::initClass();
        TestWitness::initClass();
    }
    ~OwnNode() override
    {
        TestWitness::exitClass();
        TestShelf::exitClass();
    }
    /// An input that holds this text, which it keeps.
    KsInput& inputOf(const std::string& text)
    {
        m_text = text;
        m_in.setBuffer(m_text.data(), m_text.size());
        return m_in;
    }

private:
    std::string m_text;
    KsInput m_in;
};

} // namespace

// shows: KsBase::read, KsBase::isGroup, KsBase::addWriteReference,
// KsBase::writeHeader, KsBase::writeFooter, KsBase::readInstance,
// KsInput::isBinary, KsInput::readCount, KsInput::expectChar, KsInput::takeChar, KsInput::read,
// KsInput::readWord, KsOutput::isBinary, KsOutput::getStage, KsOutput::write,
// KsOutput::writeWord, KsOutput::writeChar
TEST_F(OwnNode, isReadAndWrittenInBothForms)
{
    expectKept(ascii + R"(
TestShelf {
    ( 3 1 4 )
    label "upper"
    DEF A Cube {
        width 3
    }
    USE A
}
)");
    const KsRef<KsSeparator> root = parse("TestShelf { (1 5) Cube { } Cube { } }");
    ASSERT_TRUE(root) << errors;
    const auto* shelf = ksCast<TestShelf>(root->getChild(0));
    ASSERT_TRUE(shelf);
    EXPECT_TRUE(shelf->isGroup());
    EXPECT_EQ(shelf->numbers, (std::vector<std::int32_t>{1, 5}));
    EXPECT_EQ(shelf->getChildren()->getLength(), 2);
    EXPECT_EQ(parse("TestShelf { () Cube { } }")->getChild(0)->getChildren()->getLength(), 1);
}

// shows: KsInput::addError
TEST_F(OwnNode, recordsItsOwnErrorsAtTheirPlaces)
{
    EXPECT_EQ(errorsOf("TestShelf {\n  (1 -2 3)\n}"), "2:6: a number below zero\n");
    EXPECT_NE(errorsOf("TestShelf { 1 }").find("the numbers of a shelf"), std::string::npos);
    EXPECT_NE(errorsOf("TestShelf { (1) Sphere { } }").find("1:17: "), std::string::npos);
    KsInput& in = inputOf("word }");
    KbName word;
    EXPECT_TRUE(in.readWord(word));
    in.addError("first");
    in.addError("at the same place");
    EXPECT_FALSE(in.readWord(word));
    EXPECT_EQ(in.getErrors().size(), 1u) << "that no word follows is no error";
    EXPECT_FALSE(in.expectChar('{', nullptr));
    ASSERT_EQ(in.getErrors().size(), 2u);
    EXPECT_EQ(in.getErrors()[1].message, "expected '{', met '}'");
}

// shows: KsInput::peekChar, KsInput::peekWord, KsInput::describeNext, KsInput::skipBraces,
// KsInput::skipValue, KsInput::getBytesLeft, KsInput::isOpen, KsInput::eof
TEST_F(OwnNode, seesWhatFollowsAndSkipsIt)
{
    KsInput& in = inputOf("# a comment\n  lamp { a \"}\" { } } [ 1, 2 ] end");
    EXPECT_TRUE(in.isOpen());
    EXPECT_EQ(in.getBytesLeft(), 45u);
    EXPECT_FALSE(in.eof());
    EXPECT_EQ(in.peekChar(), 'l');
    KbName word;
    EXPECT_TRUE(in.peekWord(word));
    EXPECT_EQ(word, "lamp");
    EXPECT_EQ(in.describeNext(), "\"lamp\"");
    EXPECT_TRUE(in.readWord(word));
    EXPECT_FALSE(in.takeChar('}'));
    in.skipBraces();
    EXPECT_EQ(in.peekChar(), '[');
    in.skipBraces(); // there are none
    in.skipValue();
    EXPECT_TRUE(in.readWord(word));
    EXPECT_EQ(word, "end");
    EXPECT_EQ(in.getBytesLeft(), 0u);
    EXPECT_TRUE(in.eof());
    EXPECT_EQ(in.peekChar(), '\0');
    EXPECT_FALSE(in.peekWord(word));
    EXPECT_EQ(in.describeNext(), "the end of the file");
}

// shows: KsInput::addReference, KsInput::findReference
TEST_F(OwnNode, mayBeGivenToAFileFromOutside)
{
    const KsRef<KsCube> cube(new KsCube);
    KsInput& in = inputOf("Group { USE Given }");
    const KsRef<KsCube> former(new KsCube);
    in.addReference("Given", former);
    in.addReference("Given", cube); // the later one counts
    in.addReference("Given", nullptr);
    EXPECT_EQ(in.findReference("Given"), cube.get());
    EXPECT_EQ(in.findReference("Other"), nullptr);
    const KsRef<KsSeparator> root(KsDB::readAll(&in));
    ASSERT_TRUE(root);
    EXPECT_EQ(static_cast<KsGroup*>(root->getChild(0))->getChild(0), cube.get());
    in.closeFile();
}

// shows: KsInput::closeFile, KsInput::isOpen, KsInput::hasErrors, KsInput::postErrors,
// KsReadError::toString
TEST_F(OwnNode, errorsArePostedOnDemandAndGoneWithTheNextFile)
{
    KsInput& in = inputOf("Cubb { }");
    EXPECT_EQ(KsDB::parse(&in), nullptr);
    EXPECT_TRUE(in.hasErrors());
    ASSERT_EQ(in.getErrors().size(), 1u);
    EXPECT_EQ(in.getErrors()[0].toString().rfind("<buffer>:1:1: ", 0), 0u);
    EXPECT_TRUE(in.isOpen());
    {
        ExpectedMessages messages("Here", "Cubb");
        in.postErrors("Here");
    }
    in.closeFile();
    EXPECT_FALSE(in.isOpen());
    EXPECT_TRUE(in.hasErrors()) << "they stay until the next one is opened";
    inputOf("Cube { }");
    EXPECT_FALSE(in.hasErrors());
    const KsRef<KsSeparator> root(KsDB::parse(&in));
    EXPECT_TRUE(root);
}

// shows: KsBase::shouldWrite, KsBase::hasMultipleWriteRefs, KsOutput::getStage,
// KsOutput::setStage, KsOutput::addReference, KsOutput::getReferenceCount, KsOutput::findName,
// KsOutput::makeName
TEST_F(OwnNode, isCountedAndNamedByTheOutput)
{
    const KsRef<KsCube> a(new KsCube), b(new KsCube);
    a->setName("Box");
    b->setName("Box");
    KsOutput out;
    EXPECT_EQ(out.getStage(), KsOutput::WRITE);
    out.setStage(KsOutput::COUNT_REFS);
    EXPECT_EQ(out.getStage(), KsOutput::COUNT_REFS);
    EXPECT_EQ(out.addReference(a), 1);
    EXPECT_TRUE(a->shouldWrite(&out));
    EXPECT_FALSE(a->hasMultipleWriteRefs(&out));
    EXPECT_EQ(out.addReference(a), 2);
    EXPECT_EQ(out.addReference(nullptr), 0);
    EXPECT_FALSE(a->shouldWrite(nullptr));
    EXPECT_FALSE(a->hasMultipleWriteRefs(nullptr));
    EXPECT_EQ(out.getReferenceCount(a), 2);
    EXPECT_EQ(out.getReferenceCount(b), 0);
    EXPECT_FALSE(b->shouldWrite(&out));
    EXPECT_TRUE(a->hasMultipleWriteRefs(&out));
    EXPECT_TRUE(out.findName(a).isEmpty()) << "not written yet";
    out.setStage(KsOutput::WRITE);
    EXPECT_EQ(out.makeName(a), "Box");
    EXPECT_EQ(out.makeName(b), "Box+0") << "one name for one node";
    EXPECT_EQ(out.makeName(b), "Box+0");
    EXPECT_TRUE(out.makeName(nullptr).isEmpty());
    EXPECT_TRUE(out.findName(nullptr).isEmpty());
    EXPECT_FALSE(a->writeHeader(&out, false));
    a->writeFooter(&out);
    EXPECT_EQ(out.findName(a), "Box");
    EXPECT_TRUE(a->writeHeader(&out, false)) << "used, since it is there";
}

TEST_F(OwnNode, mayWriteTheSceneAsideWhileItIsWritten)
{
    const KsRef<KsGroup> group(new KsGroup);
    const KsRef<KsCube> shared(new KsCube);
    auto* witness = new TestWitness;
    auto* slave = new KsCube;
    auto* inner = new KsGroup;
    slave->height.connectFrom(&shared->width);
    for (KsNode* each : {static_cast<KsNode*>(shared), static_cast<KsNode*>(witness)})
        group->addChild(each);
    for (KsNode* each : {static_cast<KsNode*>(slave), static_cast<KsNode*>(shared)})
        inner->addChild(each);
    group->addChild(inner);
    const std::string text = written(group);
    witness->scene = group;
    for (const bool binary : {false, true}) {
        written(group, binary);
        EXPECT_EQ(witness->seen, std::vector<std::string>({text, text})) << binary;
        witness->seen.clear();
    }
    EXPECT_EQ(written(group), text);
}

// shows: KsOutput::newLine, KsOutput::incrementIndent, KsOutput::decrementIndent
TEST_F(OwnNode, mayLayItsTextOut)
{
    KsOutput out;
    out.writeWord("list");
    out.incrementIndent();
    for (const char* each : {"one", "two"}) {
        out.newLine();
        out.writeWord(each);
        out.writeChar(',');
    }
    out.decrementIndent();
    out.newLine();
    out.writeWord("end");
    EXPECT_EQ(out.getBuffer(), "list\n    one,\n    two,\nend");
    KsOutput binary;
    binary.setBinary(true);
    binary.newLine();
    binary.writeChar('{');
    EXPECT_EQ(binary.getBuffer(), "");
    binary.writeWord(nullptr);
    EXPECT_EQ(binary.getBuffer(), std::string(4, '\0')) << "the empty word";
}

// shows: KsOutputImpl::isSynchronizing, KsOutputImpl::setSynchronizing
TEST_F(OwnNode, mayAskWhetherTheOutputKeepsAnotherProcessInStep)
{
    KsOutput out;
    EXPECT_FALSE(KsOutputImpl::isSynchronizing(&out));
    KsOutputImpl::setSynchronizing(&out, true);
    EXPECT_TRUE(KsOutputImpl::isSynchronizing(&out));
    EXPECT_FALSE(KsOutputImpl::isSynchronizing(nullptr));
    KsOutputImpl::setSynchronizing(nullptr, true); // does nothing
}

// shows: KsInput::read, KsInput::isBinary, KsInput::getVersion, KsOutput::write,
// KsOutput::writeWord, KsOutput::setBinary, KsOutput::isBinary, KsOutput::getBuffer
TEST_F(OwnNode, mayHoldValuesOfEachType)
{
    for (const bool binary : {false, true}) {
        KsOutput out;
        out.setBinary(binary);
        EXPECT_EQ(out.isBinary(), binary);
        out.write(std::int32_t(-5));
        out.write(std::uint32_t(4000000000u));
        out.write(static_cast<unsigned short>(65535));
        out.write(0.1f);
        out.write(0.1);
        if (binary)
            out.write(std::int32_t(1));
        else
            out.writeWord("TRUE");
        out.write(KbString("a \"b\""));
        out.write(KbString("Name"));
        out.writeWord(binary ? "word" : "70000");
        if (!binary) {
            EXPECT_EQ(out.getBuffer(),
                      "-5 4000000000 65535 0.1 0.1 TRUE \"a \\\"b\\\"\" \"Name\" 70000");
        }

        KsInput in;
        const std::string head = binary ? "#Arborium V1.0 binary\n" : "#Arborium V2.0 ascii\n";
        const std::string text = head + out.getBuffer();
        in.setBuffer(text.data(), text.size());
        EXPECT_EQ(in.isBinary(), binary);
        EXPECT_EQ(in.getVersion(), binary ? 1.0f : 2.0f);
        std::int32_t whole = 0;
        std::uint32_t large = 0;
        unsigned short small = 0;
        float number = 0;
        double exact = 0;
        bool flag = false;
        KbString string;
        KbName name;
        EXPECT_TRUE(in.read(whole) && in.read(large) && in.read(small) && in.read(number) &&
                    in.read(exact) && in.read(flag) && in.read(string) && in.read(name));
        EXPECT_EQ(whole, -5);
        EXPECT_EQ(large, 4000000000u);
        EXPECT_EQ(small, 65535);
        EXPECT_EQ(number, 0.1f);
        EXPECT_EQ(exact, 0.1);
        EXPECT_TRUE(flag);
        EXPECT_EQ(string, "a \"b\"");
        EXPECT_EQ(name, "Name");
        EXPECT_FALSE(in.hasErrors());
        if (binary) {
            EXPECT_EQ(in.peekChar(), '\0') << "a binary file has no characters";
            EXPECT_FALSE(in.takeChar('w'));
            EXPECT_EQ(in.describeNext().rfind("byte ", 0), 0u);
            EXPECT_FALSE(in.eof());
            EXPECT_TRUE(in.readWord(name));
            EXPECT_EQ(name, "word");
        } else {
            EXPECT_FALSE(in.read(small)) << "beyond its range";
            EXPECT_EQ(small, 65535);
            EXPECT_TRUE(in.hasErrors());
        }
    }
    KsOutput out;
    out.write(std::numeric_limits<double>::infinity());
    out.write(-std::numeric_limits<double>::infinity());
    out.write(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(out.getBuffer(), "1.7976931348623157e+308 -1.7976931348623157e+308 0");
    // Without a first line.
    const KsInput& plain = inputOf("1");
    EXPECT_FALSE(plain.isBinary());
    EXPECT_EQ(plain.getVersion(), 2.1f);
}

// shows: KsGroup::readChildren
TEST_F(OwnNode, aGroupReadsChildrenBehindThoseThatItHas)
{
    const KsRef<KsGroup> group(new KsGroup);
    group->addChild(new KsCube);
    EXPECT_TRUE(group->readChildren(&inputOf("Sphere { } Cube { } }")));
    ASSERT_EQ(group->getNumChildren(), 3);
    EXPECT_TRUE(group->getChild(1)->isOfType(KsSphere::getClassTypeId()));
}
