// Dialog files and their cache.

#include "Elements.h"

#include <arborium/base/KbStringList.h>
#include <formweave/KsDialogWidgetList.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <QDir>
#include <QFile>

namespace {

class Files : public DialogBase {
protected:
    std::string file(const std::string& name, const std::string& text)
    {
        return folder.file(name, header + text);
    }
    /// The element, of which the caller's reference is given back at the end of the test.
    KsFormweave* load(const std::string& path, const char* id = "")
    {
        KsFormweave* element = KsFormweave::loadFromFile(path.c_str(), id);
        if (element) m_loaded.push_back(element);
        return element;
    }
    void TearDown() override
    {
        for (KsFormweave* element : m_loaded) element->unref();
        DialogBase::TearDown();
    }
    static int cached() { return Services::s_listData ? Services::s_listData->getLength() : 0; }

    Folder folder;

private:
    std::vector<KsFormweave*> m_loaded;
};

const char* const twoDialogs = R"(
TopLevelDialog { label "First" auditorID "one" DialogCheckBox { auditorID "inner" } }
DialogCheckBox { label "Second" auditorID "two" }
)";

} // namespace

TEST_F(Files, twoIdsOfOneFileGiveTwoElementsOfOneTreeThatIsReadOnce)
{
    const std::string path = file("a.arb", twoDialogs);
    KsFormweave* one = load(path, "one");
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(one->label.getValue(), "First");
    // What stands on the disk now is not looked at.
    writeFile(path, "#Arborium V2.1 ascii\nDialogCheckBox { auditorID \"two\" label \"New\" }\n");
    KsFormweave* two = load(path, "two");
    ASSERT_NE(two, nullptr);
    EXPECT_EQ(two->label.getValue(), "Second");
    EXPECT_NE(one, two);
    ASSERT_EQ(one->getNumParents(), 1);
    EXPECT_EQ(one->getParent(0), two->getParent(0));
    EXPECT_EQ(cached(), 1);
}

TEST_F(Files, theSameRequestGivesTheSameNodeWithOneMoreReference)
{
    const std::string path = file("a.arb", twoDialogs);
    KsFormweave* first = load(path, "two");
    ASSERT_NE(first, nullptr);
    const int references = first->getRefCount();
    first->label = "Changed";
    measure(first);
    KsFormweave* again = load(path, "two");
    EXPECT_EQ(again, first);
    EXPECT_EQ(first->getRefCount(), references + 1);
    EXPECT_EQ(again->label.getValue(), "Changed");
    EXPECT_EQ(again->isBuilt3D(), 1);
}

TEST_F(Files, twoNamesOfOneFileGiveTwoTrees)
{
    const std::string path = file("a.arb", twoDialogs);
    KsFormweave* one = load(path);
    KsFormweave* other = load(folder.path() + "/./a.arb");
    ASSERT_NE(one, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_NE(one, other);
    EXPECT_NE(one->getParent(0), other->getParent(0));
    EXPECT_EQ(cached(), 2);
    one->label = "Only here";
    EXPECT_EQ(other->label.getValue(), "First");
}

TEST_F(Files, withoutAnIdTheFirstElementCountsWhateverStandsBeforeIt)
{
    const std::string path = file("a.arb", R"(
        Cube { }
        Group { DialogCheckBox { label "nested" } }
        DialogCheckBox { label "first" auditorID "x" }
        TopLevelDialog { label "second" })");
    KsFormweave* element = load(path);
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(element->label.getValue(), "first");
}

TEST_F(Files, anIdIsLookedForAmongTheElementsAtTheTopOnly)
{
    const std::string path = file("a.arb", twoDialogs);
    const ExpectedMessages messages("KsFormweave::loadFromFile", "auditorID = \"inner\"");
    EXPECT_EQ(load(path, "inner"), nullptr);
}

TEST_F(Files, anElementInASeparatorIsNotFound)
{
    const std::string path = file("a.arb", "Separator { TopLevelDialog { auditorID \"in\" } }\n");
    ExpectedMessages messages("KsFormweave::loadFromFile", "", 2);
    EXPECT_EQ(load(path, "in"), nullptr);
    EXPECT_EQ(load(path), nullptr);
    ASSERT_EQ(messages.messages().size(), 2u);
    EXPECT_EQ(messages.messages()[0].text,
              "Cannot find any Formweave component with auditorID = \"in\" in Arborium file \"" +
                  path + "\".");
    EXPECT_EQ(messages.messages()[1].text,
              "Cannot find any Formweave component in Arborium file \"" + path + "\".");
}

TEST_F(Files, anIdThatMatchesNothingIsNamedWithTheFileBetweenQuotes)
{
    const std::string path = file("a.arb", twoDialogs);
    ExpectedMessages messages("KsFormweave::loadFromFile", "");
    EXPECT_EQ(load(path, "100%s"), nullptr);
    ASSERT_EQ(messages.messages().size(), 1u);
    EXPECT_EQ(messages.messages()[0].text,
              "Cannot find any Formweave component with auditorID = \"100%s\" in Arborium file \"" +
                  path + "\".");
}

TEST_F(Files, namesOfAnyScriptFindTheirFileAndAreToldAsTheyAre)
{
    const std::string name = folder.path() + "/\xd1\x84\xd0\xb0\xd0\xb9\xd0\xbb.arb";
    writeFile(name, std::string(header) + twoDialogs);
    EXPECT_NE(load(name), nullptr) << "as bytes";
    KsFormweave* element = KsFormweave::loadFromFile(KbString::fromUtf8(name), "two");
    ASSERT_NE(element, nullptr) << "as characters";
    element->unref();
    ExpectedMessages messages("KsFormweave::loadFromFile", ("in Arborium file \"" + name).c_str(),
                              2);
    messages.allow("", "");
    EXPECT_EQ(load(name, "none"), nullptr);
    EXPECT_EQ(KsFormweave::loadFromFile(KbString::fromUtf8(name), "none"), nullptr);
}

TEST_F(Files, aFileWithoutAMatchStaysCached)
{
    const std::string path = file("a.arb", "Cube { }\n");
    const std::string text =
        "Cannot find any Formweave component in Arborium file \"" + path + "\".";
    ExpectedMessages messages("KsFormweave::loadFromFile", "", 2);
    EXPECT_EQ(load(path), nullptr);
    EXPECT_EQ(cached(), 1);
    writeFile(path, std::string(header) + twoDialogs);
    EXPECT_EQ(load(path), nullptr) << "the file is not read again";
    EXPECT_EQ(cached(), 1);
    for (const auto& message : messages.messages()) EXPECT_EQ(message.text, text);
}

TEST_F(Files, theFirstOfTwoEqualIdsCounts)
{
    const std::string path = file("a.arb", R"(
        DialogCheckBox { auditorID "x" label "first" }
        DialogCheckBox { auditorID "x" label "second" })");
    KsFormweave* element = load(path, "x");
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(element->label.getValue(), "first");
}

TEST_F(Files, aMissingFileGivesNullAMessageAndNoRecord)
{
    const std::string path = folder.path("later.arb");
    {
        const ExpectedMessages messages("", "later.arb");
        EXPECT_EQ(load(path), nullptr);
    }
    EXPECT_EQ(cached(), 0);
    writeFile(path, std::string(header) + twoDialogs);
    EXPECT_NE(load(path), nullptr) << "what failed is tried again";
}

TEST_F(Files, aFolderInPlaceOfAFileGivesNullAndAMessage)
{
    const ExpectedMessages messages("", "");
    EXPECT_EQ(load(folder.path()), nullptr);
    EXPECT_EQ(cached(), 0);
}

TEST_F(Files, theFileIsLookedForInTheDirectoriesOfTheLayer)
{
    file("listed.arb", twoDialogs);
    KsInput::addDirectoryLast(folder.path().c_str());
    EXPECT_NE(load("listed.arb"), nullptr);
    KsInput::removeDirectory(folder.path().c_str());
}

// Broken files. Each says where it is broken, and leaves what is open alone.

struct Broken {
    const char* name;
    std::string text;
    const char* place; ///< "line:column: " of the message and how it begins, or empty.
};

class BrokenFile : public Files, public testing::WithParamInterface<Broken> {};

TEST_P(BrokenFile, givesNullAndAMessageAndLeavesOpenDialogsAlone)
{
    const std::string good = file("good.arb", twoDialogs);
    auto* open = static_cast<KsTopLevelDialog*>(load(good, "one"));
    ASSERT_NE(open, nullptr);
    open->buildDialog();
    measure(open);
    const std::string before = written(open);

    const std::string path = folder.file("broken.arb", GetParam().text);
    const int nodes = KsBase::getNumInstances();
    {
        ExpectedMessages messages;
        messages.allow("", "");
        EXPECT_EQ(load(path), nullptr);
        ASSERT_FALSE(messages.messages().empty());
        const std::string expected = path + (*GetParam().place ? ":" : "") + GetParam().place;
        EXPECT_NE(messages.text().find(expected), std::string::npos) << messages.text();
    }
    EXPECT_EQ(KsBase::getNumInstances(), nodes) << "nothing is left behind";
    EXPECT_EQ(cached(), 1) << "only the good file";
    EXPECT_EQ(written(open), before);
    EXPECT_NE(open->getBaseWidget(), nullptr);
    delete open->getBaseWidget();
    // Put right, it loads.
    writeFile(path, std::string(header) + twoDialogs);
    EXPECT_NE(load(path), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    All, BrokenFile,
    testing::Values(
        Broken{"empty", "", "1:1: "},
        Broken{"wrongHeader", "#Scenery V9.9 ascii\nGroup { }\n", "1:1: "},
        Broken{"noHeader", "TopLevelDialog { }\n", "1:1: "},
        Broken{"garbage",
               std::string("\x7f"
                           "ELF\x02\x01\x01\0\0\xff\xfe{}{\0",
                           15),
               "1:1: "},
        Broken{"binaryGarbage", "#Arborium V2.1 binary\n\x01\x02\x03\x04\xff\xff\xff\xff", ""},
        Broken{"truncated", "#Arborium V2.1 ascii\nTopLevelDialog { label \"a\n", ""},
        Broken{"unknownType", "#Arborium V2.1 ascii\n\n  TopLevelDialogue { }\n", "3:3: "},
        Broken{"unknownField", "#Arborium V2.1 ascii\nDialogCheckBox {\n  colour 3\n}\n", "3:3: "},
        Broken{"wrongKind", "#Arborium V2.1 ascii\nDialogCheckBox {\n  width wide\n}\n", "3:9: "},
        Broken{"outOfRange", "#Arborium V2.1 ascii\nDialogCheckBox {\n  width 3000000000\n}\n",
               "3:9: "},
        Broken{"unknownEnum",
               "#Arborium V2.1 ascii\nDialogCheckBox {\n  edgeStyle SHADOW_ROUND\n}\n", "3:13: "},
        Broken{"wrongChild", "#Arborium V2.1 ascii\nRowDialog {\n  Cube { }\n}\n", "3:3: "},
        Broken{"dialogInDialog",
               "#Arborium V2.1 ascii\nTopLevelDialog {\n  TopLevelDialog { }\n}\n", "3:3: "},
        Broken{"childOfALeaf", "#Arborium V2.1 ascii\nDialogCheckBox {\n  DialogCheckBox { }\n}\n",
               "3:3: "},
        Broken{"unknownUse", "#Arborium V2.1 ascii\nTopLevelDialog {\n  USE nobody\n}\n", "3:7: "},
        Broken{"bracesWithoutEnd", "#Arborium V2.1 ascii\nTopLevelDialog {\n RowDialog {\n", ""},
        Broken{"tooManyBraces", "#Arborium V2.1 ascii\nTopLevelDialog { }\n}\n", "3:1: "}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(Files, allErrorsOfAFileComeInOneRun)
{
    const std::string path = file("a.arb", R"(TopLevelDialog {
  colour 1
  DialogCheckBox { width wide }
  Unknown { }
  DialogCheckBox { edgeStyle ROUND }
}
)");
    ExpectedMessages messages;
    messages.allow("", "");
    EXPECT_EQ(load(path), nullptr);
    for (const char* place : {":3:", ":4:", ":5:", ":6:"})
        EXPECT_NE(messages.text().find(path + place), std::string::npos) << place << "\n"
                                                                         << messages.text();
}

TEST_F(Files, deepNestingGivesOneMessageAtTheLimit)
{
    std::string text;
    for (int i = 0; i < 100000; ++i) text += "ColumnDialog {\n";
    for (int i = 0; i < 100000; ++i) text += "}\n";
    const std::string path = file("deep.arb", text);
    const int nodes = KsBase::getNumInstances();
    ExpectedMessages messages;
    messages.allow("", "");
    EXPECT_EQ(load(path), nullptr);
    EXPECT_EQ(messages.messages().size(), 1u);
    EXPECT_EQ(KsBase::getNumInstances(), nodes);
}

TEST_F(Files, anElementUsedInTwoPlacesIsRefusedAtTheSecond)
{
    const std::string path = file("a.arb", R"(TopLevelDialog {
        RowDialog { DEF shared DialogCheckBox { } }
        RowDialog { USE shared }
    })");
    ExpectedMessages messages;
    messages.allow("", "");
    KsFormweave* dialog = load(path);
    EXPECT_FALSE(messages.messages().empty());
    if (dialog) {
        auto* second =
            static_cast<KsRowDialog*>(static_cast<KsTopLevelDialog*>(dialog)->getChild(1));
        EXPECT_EQ(second->getNumChildren(), 0);
    }
}

// The private reader, and the writer for debugging.

TEST_F(Files, theReaderOfSkinsLeavesTheDirectoriesAsTheyWere)
{
    KsInput::addDirectoryFirst("/first");
    KsInput::addDirectoryLast("/last");
    const KbStringList before = KsInput::getDirectories();
    KsGroup* missing = Services::readFromFile("NoSuchFile.arb");
    EXPECT_EQ(missing, nullptr) << "in silence";
    const KsRef<KsGroup> found(Services::readFromFile("TextProperties.arb"));
    EXPECT_TRUE(found);
    const KbStringList& after = KsInput::getDirectories();
    ASSERT_EQ(after.getLength(), before.getLength());
    for (int i = 0; i < before.getLength(); ++i) EXPECT_EQ(after[i], before[i]);
    KsInput::removeDirectory("/first");
    KsInput::removeDirectory("/last");
}

TEST_F(Files, theReaderOfSkinsDoesNotLookInTheCurrentDirectory)
{
    const QString former = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QString::fromStdString(folder.path())));
    file("Stray.arb", "Cube { }\n");
    EXPECT_EQ(Services::readFromFile("Stray.arb"), nullptr);
    QDir::setCurrent(former);
}

TEST_F(Files, theGeometryIsWrittenAsTextForDebugging)
{
    KsRef<ProbeBox> box(new ProbeBox);
    const std::string path = folder.path("geometry.arb");
    std::string name = path;
    box->writeNode(name.data());
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path))) << "there is no geometry yet";
    measure(box.get());
    box->writeNode(name.data());
    const std::string text = readText(path);
    EXPECT_EQ(text.rfind("#Arborium", 0), 0u);
    EXPECT_NE(text.find("ascii"), std::string::npos);
    EXPECT_NE(text.find("Scale {"), std::string::npos);
    EXPECT_EQ(text.find("DialogCheckBox {"), std::string::npos) << "the geometry, not the element";
}

// What a tree writes.

TEST_F(Files, aTreeBuiltIn3DOnlyWritesWhatItWasReadFrom)
{
    const std::string path = file("a.arb", R"(
TopLevelDialog {
    label "Settings"
    DialogCheckBox {
        label "Shadows"
        onString "on"
    }
    RowDialog {
        DialogCheckBox {
            width 120
            fixedWidth TRUE
        }
    }
}
)");
    KsFormweave* dialog = load(path);
    ASSERT_NE(dialog, nullptr);
    const std::string before = written(dialog);
    EXPECT_NE(before.find("width 120"), std::string::npos);
    measure(dialog);
    EXPECT_EQ(dialog->isBuilt3D(), 1);
    EXPECT_EQ(written(dialog), before);
}

// Lists of widgets.

TEST(WidgetList, holdsWidgetsInOrderWithoutOwningThem)
{
    QWidget a, b, c;
    {
        KsDialogWidgetList list(4);
        EXPECT_EQ(list.getLength(), 0);
        list.append(&a);
        list.append(&c);
        list.insert(&b, 1);
        EXPECT_EQ(list.getLength(), 3);
        EXPECT_EQ(list[1], &b);
        EXPECT_EQ(list.find(&c), 2);
        QWidget stranger;
        EXPECT_EQ(list.find(&stranger), -1);
        list[0] = &stranger;
        EXPECT_EQ(list[0], &stranger);

        KsDialogWidgetList copy(list), assigned;
        assigned = list;
        copy.append(&a);
        EXPECT_EQ(list.getLength(), 3);
        EXPECT_EQ(assigned.getLength(), 3);
        EXPECT_EQ(assigned[2], &c);
    }
    EXPECT_FALSE(a.isVisible()) << "still alive";
}
