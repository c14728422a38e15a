// Start and stop of the library, and the registration of its classes.

#include "Elements.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/base/KcInitModuleCmd.h>
#include <arborium/base/KsModule.h>
#include <arborium/kits/KsInteractionKit.h>
#include <formweave/formweave.h>

#include <cstring>
#include <regex>

namespace {

struct Counts {
    int db = KsDB::getInitCount();
    int kits = KsNodeKit::getInitCount();
    int interaction = KsInteraction::getInitCount();
    bool operator==(const Counts& other) const
    {
        return db == other.db && kits == other.kits && interaction == other.interaction;
    }
};

int announcements()
{
    const auto& names = KcInitModuleCmd::Instance()->getNames();
    return static_cast<int>(std::count(names.begin(), names.end(), "Formweave"));
}

/// The layer alone, as a host program has started it before it uses dialogs.
class LayerOnly : public testing::Test {
protected:
    void SetUp() override
    {
        KsDB::init();
        KsNodeKit::init();
        KsInteraction::init();
    }
    void TearDown() override
    {
        KsInteraction::finish();
        KsNodeKit::finish();
        KsDB::finish();
    }
};

std::vector<std::string> fieldNames(const KsFieldContainer& node)
{
    std::vector<std::string> names;
    for (int i = 0; i < node.getFieldData()->getNumFields(); ++i)
        names.emplace_back(node.getFieldData()->getFieldName(i).getString());
    return names;
}

} // namespace

TEST(Lifecycle, isNotInitializedBeforeInit) { EXPECT_FALSE(KsFormweave::isInitialized()); }

TEST(Lifecycle, oneFinishAfterTwoInitsKeepsTheClasses)
{
    KsFormweave::init();
    const Counts once;
    KsFormweave::init();
    KsFormweave::finish();
    EXPECT_TRUE(KsFormweave::isInitialized());
    EXPECT_FALSE(KsType::fromName("DialogCheckBox").isBad());
    EXPECT_TRUE(Counts() == once) << "each layer was finished once";
    KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
    EXPECT_EQ(box->getTypeId(), KsType::fromName("DialogCheckBox"));
    box.reset();
    KsFormweave::finish();
    EXPECT_FALSE(KsFormweave::isInitialized());
    EXPECT_TRUE(KsType::fromName("DialogCheckBox").isBad());
}

TEST(Lifecycle, initAndFinishOfTheLayerPair)
{
    const Counts before;
    KsFormweave::init();
    const Counts once;
    EXPECT_GT(once.db, before.db);
    EXPECT_GT(once.kits, before.kits);
    EXPECT_GT(once.interaction, before.interaction);
    KsFormweave::init();
    EXPECT_GT(Counts().db, once.db) << "the layer is started at every init, nested or not";
    KsFormweave::finish();
    KsFormweave::finish();
    EXPECT_TRUE(Counts() == before);
}

TEST_F(LayerOnly, finishWithoutInitDoesNothing)
{
    const Counts before;
    KsFormweave::finish();
    EXPECT_TRUE(Counts() == before);
    EXPECT_FALSE(KsFormweave::isInitialized());
}

TEST(Lifecycle, theModuleIsAnnouncedByTheFirstInitOnly)
{
    ASSERT_EQ(announcements(), 0);
    KsFormweave::init();
    EXPECT_EQ(announcements(), 1);
    KsFormweave::init();
    EXPECT_EQ(announcements(), 1);
    KsFormweave::finish();
    KsFormweave::finish();
    EXPECT_EQ(announcements(), 1);
    KsFormweave::init();
    EXPECT_EQ(announcements(), 2);
    KsFormweave::finish();
}

TEST(Lifecycle, nameAndVersion)
{
    EXPECT_STREQ(KsFormweave::getProductName(), "Formweave");
    EXPECT_STREQ(KsFormweave::getVersion(), "1.0.0.0");
    EXPECT_TRUE(
        std::regex_match(KsFormweave::getVersion(), std::regex("\\d+\\.\\d+\\.\\d+\\.\\d+")));
}

TEST(Lifecycle, theLibraryIsInTheListOfModulesFromItsLoadingOn)
{
    const KsModule* ours = nullptr;
    for (int i = 0; i < KsModule::getNumModules(); ++i) {
        const KsModule* module = KsModule::getModule(i);
        if (module->getFileName().find("formweave") != std::string::npos) ours = module;
    }
    ASSERT_NE(ours, nullptr);
    EXPECT_EQ(ours->getVersion(), KsFormweave::getVersion());
    EXPECT_EQ(ours->getArchitecture(), "64 bits");
    EXPECT_FALSE(ours->getCompiler().empty());
    EXPECT_EQ(ours->getFirstFlag(), 1);
    EXPECT_EQ(ours->getSecondFlag(), 1);
}

TEST_F(LayerOnly, aNodeMadeBeforeInitPostsAndThenWorks)
{
    {
        ExpectedMessages messages;
        for (const char* name :
             {"KsFormweave", "KsTopComponent", "KsDialogComponent", "KsDialogCheckBox"}) {
            const std::string text = std::string("Can't construct a node of type ") + name +
                                     " until initClass() has been called";
            messages.expect("KS_NODE_CONSTRUCTOR", text.c_str());
        }
        KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
        box->state = true;
        EXPECT_TRUE(box->state);
        EXPECT_EQ(box->getTypeId().getName(), "DialogCheckBox");
        EXPECT_NE(box->getAnyPart("stateOn", true), nullptr);
        EXPECT_EQ(written(box.get()).find("USE"), std::string::npos);
    }
    // A second one finds the class there.
    KsRef<KsDialogCheckBox> second(new KsDialogCheckBox);
    EXPECT_FALSE(second->state);
}

TEST(Lifecycle, aDialogMadeBeforeEverythingElseCanBeShown)
{
    KsRef<KsTopLevelDialog> dialog;
    {
        ExpectedMessages messages;
        messages.allow("KS_NODE_CONSTRUCTOR", "Can't construct a node of type");
        messages.allow("KsBaseKit::initClass", "initialized before parent class");
        dialog = new KsTopLevelDialog;
        dialog->addChild(new KsDialogCheckBox);
    }
    KsFormweave::init();
    KsGetBoundingBoxAction measure{KbViewportRegion(100, 100)};
    measure.apply(dialog.get());
    EXPECT_FALSE(measure.getBoundingBox().isEmpty());
    EXPECT_TRUE(dialog->getChild(0)->isBuilt3D());
    dialog.reset();
    KsFormweave::finish();
}

TEST_F(LayerOnly, initAfterAnEarlyNodeChangesNothingOfItsClass)
{
    KsType early;
    KsRef<KsDialogCheckBox> box;
    {
        ExpectedMessages messages("KS_NODE_CONSTRUCTOR", "Can't construct a node of type", 4);
        box = new KsDialogCheckBox;
        early = box->getTypeId();
    }
    KsFormweave::init();
    EXPECT_EQ(box->getTypeId(), early);
    EXPECT_EQ(KsType::fromName("DialogCheckBox"), early);
    EXPECT_TRUE(box->isOfType(KsDialogComponent::getClassTypeId()));
    box.reset();
    KsFormweave::finish();
}

TEST(Lifecycle, registeringARegisteredClassChangesNothing)
{
    KsFormweave::init();
    const KsType type = KsDialogCheckBox::getClassTypeId();
    KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
    KsDialogCheckBox::initClass();
    EXPECT_EQ(KsDialogCheckBox::getClassTypeId(), type);
    EXPECT_EQ(fieldNames(*box), fieldNames(*KsRef<KsDialogCheckBox>(new KsDialogCheckBox)));
    box.reset();
    KsFormweave::finish();
}

TEST_F(LayerOnly, aClassRegisteredBeforeItsParentPostsAndRegistersTheParent)
{
    {
        ExpectedMessages messages("KsTopLevelDialog::initClass",
                                  "KsTopLevelDialog initialized before parent class KsFormweave\n");
        KsTopLevelDialog::initClass();
        ASSERT_EQ(messages.messages().size(), 1u);
        EXPECT_EQ(messages.messages()[0].text,
                  "KsTopLevelDialog initialized before parent class KsFormweave\n");
    }
    EXPECT_EQ(KsTopLevelDialog::getClassTypeId().getParent(), KsFormweave::getClassTypeId());
    EXPECT_EQ(KsFormweave::getClassTypeId().getParent(), KsDragger::getClassTypeId());
    KsTopLevelDialog::exitClass();
    KsFormweave::exitClass();
}

TEST(Lifecycle, exitClassTwicePostsAtTheSecondCall)
{
    KsFormweave::init();
    KsDialogCheckBox::exitClass();
    EXPECT_TRUE(KsDialogCheckBox::getClassTypeId().isBad());
    {
        ExpectedMessages messages("KsDialogCheckBox::exitClass", "Unable to remove type");
        KsDialogCheckBox::exitClass();
        ASSERT_EQ(messages.messages().size(), 1u);
        EXPECT_EQ(messages.messages()[0].text,
                  "Unable to remove type (DialogCheckBox) for this class. Check exitClass() method "
                  "is implemented and is called only once.\n");
    }
    KsDialogCheckBox::initClass();
    KsFormweave::finish();
}

namespace {

/// Every class of elements, in the order of registration.
struct RegisteredClass {
    const char* name;
    void (*exit)();
};
#define REGISTERED(name)                                                                           \
    {                                                                                              \
#name, &Ks##name::exitClass                                                                \
    }
const RegisteredClass registeredClasses[] = {
    REGISTERED(Formweave),
    REGISTERED(MenuItem),
    REGISTERED(MenuCheckBox),
    REGISTERED(MenuCheckBoxLauncher),
    REGISTERED(MenuPopup),
    REGISTERED(MenuPushButton),
    REGISTERED(MenuFileSelection),
    REGISTERED(MenuPushButtonLauncher),
    REGISTERED(MenuRadioButtons),
    REGISTERED(MenuSeparator),
    REGISTERED(TopComponent),
    REGISTERED(DialogComponent),
    REGISTERED(DialogCheckBox),
    REGISTERED(DialogCheckBoxLauncher),
    REGISTERED(DialogChoice),
    REGISTERED(DialogComboBox),
    REGISTERED(DialogRadioButtons),
    REGISTERED(DialogCustom),
    REGISTERED(DialogEditText),
    REGISTERED(DialogGroup),
    REGISTERED(ColumnDialog),
    REGISTERED(RowDialog),
    REGISTERED(TabDialog),
    REGISTERED(DialogLabel),
    REGISTERED(DialogPushButton),
    REGISTERED(DialogPushButtonLauncher),
    REGISTERED(DialogSeparator),
    REGISTERED(DialogSlider),
    REGISTERED(DialogIntegerSlider),
    REGISTERED(DialogRealSlider),
    REGISTERED(MenuBar),
    REGISTERED(TopLevelDialog),
    REGISTERED(MessageDialog),
};
#undef REGISTERED

} // namespace

TEST(Lifecycle, theClassesAreRegisteredInTheirOrder)
{
    KsFormweave::init();
    std::vector<std::string> order, expected;
    KsType::forEach([&](KsType type) {
        if (type.isDerivedFrom(KsFormweave::getClassTypeId()))
            order.emplace_back(type.getName().getString());
    });
    for (const RegisteredClass& each : registeredClasses) expected.emplace_back(each.name);
    EXPECT_EQ(order, expected);
    KsFormweave::finish();
}

TEST(Lifecycle, theClassesGoInTheReverseOrder)
{
    KsFormweave::init();
    // A class that has gone already says so when its turn comes.
    for (const RegisteredClass& each : registeredClasses) each.exit();
    std::vector<std::string> order, expected;
    {
        ExpectedMessages messages;
        messages.allow("", "Unable to remove type");
        KsFormweave::finish();
        for (const auto& message : messages.messages()) order.push_back(message.where);
    }
    for (const RegisteredClass& each : registeredClasses)
        expected.insert(expected.begin(), std::string("Ks") + each.name + "::exitClass");
    EXPECT_EQ(order, expected);
}

TEST(Lifecycle, typesAreNamedAsTheirClassesWithoutThePrefixAndKnownEitherWay)
{
    KsFormweave::init();
    EXPECT_EQ(KsDialogComponent::getClassTypeId().getName(), "DialogComponent");
    EXPECT_EQ(KsFormweave::getClassTypeId().getName(), "Formweave");
    EXPECT_EQ(KsType::fromName("KsDialogCheckBox"), KsDialogCheckBox::getClassTypeId());
    EXPECT_EQ(KsDialogCheckBox::getClassTypeId().getParent(), KsDialogComponent::getClassTypeId());
    EXPECT_EQ(KsDialogComponent::getClassTypeId().getParent(), KsTopComponent::getClassTypeId());
    EXPECT_EQ(KsTopComponent::getClassTypeId().getParent(), KsFormweave::getClassTypeId());
    EXPECT_TRUE(KsRowDialog::getClassTypeId().isDerivedFrom(KsType::fromName("DialogGroup")));
    EXPECT_TRUE(KsColumnDialog::getClassTypeId().isDerivedFrom(KsType::fromName("DialogGroup")));
    KsFormweave::finish();
}

TEST(Lifecycle, theAuditorsComeAndGoWithTheLibraryUnderTheirFullNames)
{
    EXPECT_TRUE(KsAuditor::getClassTypeId().isBad());
    KsFormweave::init();
    EXPECT_EQ(KsAuditor::getClassTypeId().getName(), "Auditor")
        << "the root alone has a short name";
    EXPECT_EQ(KsDialogCheckBoxAuditor::getClassTypeId().getName(), "KsDialogCheckBoxAuditor");
    KsFormweave::finish();
    EXPECT_TRUE(KsAuditor::getClassTypeId().isBad());
    EXPECT_TRUE(KsDialogCheckBoxAuditor::getClassTypeId().isBad());
}

TEST(Lifecycle, aSecondLifeOfTheLibraryWorksAsTheFirst)
{
    std::vector<std::string> names;
    for (int life = 0; life < 3; ++life) {
        KsFormweave::init();
        KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
        KsRef<KsDialogCheckBox> other(new KsDialogCheckBox);
        if (life == 0) names = fieldNames(*box);
        EXPECT_EQ(fieldNames(*box), names);
        EXPECT_EQ(fieldNames(*other), names);
        EXPECT_EQ(box->getIsBuiltIn(), 1);
        EXPECT_NE(box->getNodekitCatalog()->getPartNumber("stateSwitch"), -1);
        measure(box.get());
        EXPECT_EQ(box->isBuilt3D(), 1);
        box.reset();
        other.reset();
        KsFormweave::finish();
        EXPECT_EQ(KsDialogCheckBox::getClassNodekitCatalog(), nullptr);
    }
}

TEST(Lifecycle, theFirstInstanceAloneFillsTheRecordOfItsClass)
{
    KsFormweave::init();
    EXPECT_EQ(KsDialogCheckBox::classRecord.firstInstance, 1);
    EXPECT_EQ(KsDialogCheckBox::classRecord.fieldData, nullptr);
    KsRef<KsDialogCheckBox> first(new KsDialogCheckBox);
    const KsFieldData* data = first->getFieldData();
    const int fields = data->getNumFields();
    const int parts = first->getNodekitCatalog()->getNumEntries();
    KsRef<KsDialogCheckBox> second(new KsDialogCheckBox);
    EXPECT_EQ(KsDialogCheckBox::classRecord.firstInstance, 0);
    EXPECT_EQ(second->getFieldData(), data);
    EXPECT_EQ(data->getNumFields(), fields);
    EXPECT_EQ(second->getNodekitCatalog()->getNumEntries(), parts);
    first.reset();
    second.reset();
    KsFormweave::finish();
}

TEST(Lifecycle, theLastFinishReleasesTheFileCache)
{
    Folder folder;
    const std::string path =
        folder.file("a.arb", std::string(header) + "TopLevelDialog { DialogCheckBox { } }\n");
    KsFormweave::init();
    KsFormweave::init();
    const int before = KsBase::getNumInstances();
    KsFormweave* dialog = KsFormweave::loadFromFile(path.c_str(), "");
    ASSERT_NE(dialog, nullptr);
    dialog->unref();
    EXPECT_GT(KsBase::getNumInstances(), before);
    KsFormweave::finish();
    EXPECT_GT(KsBase::getNumInstances(), before) << "the library is still in use";
    KsFormweave::finish();
    EXPECT_EQ(KsBase::getNumInstances(), before);
    EXPECT_EQ(Services::s_listData, nullptr);
}
