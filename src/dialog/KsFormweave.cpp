#include <formweave/KsFormweave.h>

#include "KsFileCache.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/base/KcInitModuleCmd.h>
#include <arborium/base/KsModule.h>
#include <arborium/io/KsDB.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsAuditor.h>
#include <formweave/KsColumnDialog.h>
#include <formweave/KsDialogCheckBox.h>
#include <formweave/KsDialogCheckBoxLauncher.h>
#include <formweave/KsDialogChoice.h>
#include <formweave/KsDialogComboBox.h>
#include <formweave/KsDialogCustom.h>
#include <formweave/KsDialogEditText.h>
#include <formweave/KsDialogGroup.h>
#include <formweave/KsDialogIntegerSlider.h>
#include <formweave/KsDialogLabel.h>
#include <formweave/KsDialogPushButton.h>
#include <formweave/KsDialogPushButtonLauncher.h>
#include <formweave/KsDialogRadioButtons.h>
#include <formweave/KsDialogRealSlider.h>
#include <formweave/KsDialogSeparator.h>
#include <formweave/KsMenuBar.h>
#include <formweave/KsMenuCheckBox.h>
#include <formweave/KsMenuCheckBoxLauncher.h>
#include <formweave/KsMenuFileSelection.h>
#include <formweave/KsMenuPopup.h>
#include <formweave/KsMenuPushButton.h>
#include <formweave/KsMenuPushButtonLauncher.h>
#include <formweave/KsMenuRadioButtons.h>
#include <formweave/KsMenuSeparator.h>
#include <formweave/KsMessageDialog.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTabDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <iterator>
#include <unordered_set>

KS_KIT_SOURCE(KsFormweave, KsDragger)

namespace {

// Registered in this order, taken out in the reverse one.
struct ClassSteps {
    void (*init)();
    void (*exit)();
};
#define CLASS_STEPS(Class)                                                                         \
    {                                                                                              \
        &Class::initClass, &Class::exitClass                                                       \
    }
// clang-format off
constexpr ClassSteps classes[] = {
    CLASS_STEPS(KsFormweave),
    CLASS_STEPS(KsMenuItem),
    CLASS_STEPS(KsMenuCheckBox),
    CLASS_STEPS(KsMenuCheckBoxLauncher),
    CLASS_STEPS(KsMenuPopup),
    CLASS_STEPS(KsMenuPushButton),
    CLASS_STEPS(KsMenuFileSelection),
    CLASS_STEPS(KsMenuPushButtonLauncher),
    CLASS_STEPS(KsMenuRadioButtons),
    CLASS_STEPS(KsMenuSeparator),
    CLASS_STEPS(KsTopComponent),
    CLASS_STEPS(KsDialogComponent),
    CLASS_STEPS(KsDialogCheckBox),
    CLASS_STEPS(KsDialogCheckBoxLauncher),
    CLASS_STEPS(KsDialogChoice),
    CLASS_STEPS(KsDialogComboBox),
    CLASS_STEPS(KsDialogRadioButtons),
    CLASS_STEPS(KsDialogCustom),
    CLASS_STEPS(KsDialogEditText),
    CLASS_STEPS(KsDialogGroup),
    CLASS_STEPS(KsColumnDialog),
    CLASS_STEPS(KsRowDialog),
    CLASS_STEPS(KsTabDialog),
    CLASS_STEPS(KsDialogLabel),
    CLASS_STEPS(KsDialogPushButton),
    CLASS_STEPS(KsDialogPushButtonLauncher),
    CLASS_STEPS(KsDialogSeparator),
    CLASS_STEPS(KsDialogSlider),
    CLASS_STEPS(KsDialogIntegerSlider),
    CLASS_STEPS(KsDialogRealSlider),
    CLASS_STEPS(KsMenuBar),
    CLASS_STEPS(KsTopLevelDialog),
    CLASS_STEPS(KsMessageDialog),
};
// clang-format on
#undef CLASS_STEPS

KbThreadMutex* s_initLock = nullptr;

#if defined(__clang__)
constexpr const char* compilerName = "clang";
#else
constexpr const char* compilerName = "gcc";
#endif
constexpr const char* versionString = "1.0.0.0";
const KsModule s_module("libformweave.so", versionString, compilerName, "64 bits", 1, 1);

// Every element that has a 3D form: a new skin is measured in each.
std::unordered_set<KsFormweave*>& elementsIn3D()
{
    static auto& elements = *new std::unordered_set<KsFormweave*>;
    return elements;
}

} // namespace

int KsFormweave::s_initRefCount = 0;
KbPList* KsFormweave::s_listData = nullptr;
KsFormweave* KsFormweave::m_lastActive = nullptr;
int KsFormweave::m_errorMsgDelivered = 0;

KsFormweave::KsFormweave()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("LabelAlignment", {{"LEFT", LEFT}, {"CENTER", CENTER}, {"RIGHT", RIGHT}});
    build.field("enable", enable, true);
    build.field("label", label, "");
    build.field("auditorID", auditorID, "");
    build.enumField("labelAlignment", labelAlignment, "LabelAlignment", RIGHT);
    build.part("geomSwitch", KsSwitch::getClassTypeId(), "geomSeparator", KsHiddenPart);
    m_labelCachedBBox = staleBox();
}

KsFormweave::~KsFormweave()
{
    KsFormweave::set3DInactive();
    if (m_built3D) elementsIn3D().erase(this);
}

void KsFormweave::init()
{
    if (!s_initLock) s_initLock = new KbThreadMutex(0);
    KbThreadAutoLock lock(s_initLock);
    KsDB::init();
    KsNodeKit::init();
    KsInteraction::init();
    if (s_initRefCount == 0) {
        for (const ClassSteps& c : classes) c.init();
        KsAuditor::initClasses();
        KcInitModuleCmd::Instance()->serialize(getProductName());
    }
    ++s_initRefCount;
}

void KsFormweave::finish()
{
    if (s_initRefCount == 0) return;
    --s_initRefCount;
    if (s_initRefCount == 0) {
        // Out of sight first: an element that dies now must not look for itself in the cache.
        const std::unique_ptr<KbPList> records(s_listData);
        s_listData = nullptr;
        for (int i = 0; records && i < records->getLength(); ++i) {
            const std::unique_ptr<DialogFileRecord> record(
                static_cast<DialogFileRecord*>(records->get(i)));
            record->root->unref();
        }
        KsAuditor::exitClasses();
        for (auto c = std::rbegin(classes); c != std::rend(classes); ++c) c->exit();
    }
    KsInteraction::finish();
    KsNodeKit::finish();
    KsDB::finish();
    if (s_initRefCount == 0) {
        delete s_initLock;
        s_initLock = nullptr;
    }
}

bool KsFormweave::isInitialized() { return s_initRefCount > 0; }

const char* KsFormweave::getProductName() { return "Formweave"; }

const char* KsFormweave::getVersion() { return versionString; }

void KsFormweave::buildWidget(QWidget* parent, KbVec2i32&, KbVec2i32&, int build2D)
{
    if (build2D) {
        m_build2D = build2D;
        m_parentWidget = parent;
    } else {
        // A list that was emptied lost the kit's own node with it.
        restoreTopSeparator();
        if (!isBuilt3D()) create3DFormweave();
    }
    m_enableSensor.arm(this, enable);
    m_labelSensor.arm(this, label);
    m_labelAlignmentSensor.arm(this, labelAlignment);
}

void KsFormweave::destroyWidget() { m_build2D = 0; }

void KsFormweave::fieldChangedCB(void* data, KsSensor* sensor)
{
    static_cast<KsFormweave*>(data)->updateFromSensor(sensor);
}

void KsFormweave::updateFromSensor(KsSensor* sensor)
{
    if (m_enableSensor.is(sensor)) {
        updateBoth(this, &KsFormweave::changeEnable, &KsFormweave::change3DEnable);
    } else if (m_labelSensor.is(sensor)) {
        updateBoth(this, &KsFormweave::changeLabel, &KsFormweave::change3DLabel);
    } else if (m_labelAlignmentSensor.is(sensor)) {
        updateBoth(this, &KsFormweave::changeLabelAlignment, &KsFormweave::change3DLabelAlignment);
    }
}

void KsFormweave::applyAuditor(KsFormweave*) {}
void KsFormweave::resetSize() {}
void KsFormweave::changeEnable() {}
void KsFormweave::changeLabel() {}
void KsFormweave::changeLabelAlignment() {}
void KsFormweave::change3DPosition() {}
void KsFormweave::change3DLabelAlignment() {}

KsFormweave* KsFormweave::getFirstTopParent(int ignoreStop, int acceptSelf)
{
    // Containers stop the climb where they cannot be traversed; the answer is then the element
    // below them, as at the top.
    KsFormweave* node = this;
    while (KsFormweave* parent = node->m_parent) {
        if (!parent->canBeTraversed() && !ignoreStop) return acceptSelf ? node : nullptr;
        if (parent->isOfType(KsTopLevelDialog::getClassTypeId())) return parent;
        node = parent;
    }
    return acceptSelf && node->isOfType(KsDialogGroup::getClassTypeId()) ? node : nullptr;
}

void KsFormweave::addAuditor(KsAuditor* auditor)
{
    if (!auditor) return;
    if (!m_auditorList) m_auditorList = std::make_unique<KbPList>();
    if (m_auditorList->find(auditor) == -1) m_auditorList->append(auditor);
}

void KsFormweave::removeAuditor(KsAuditor* auditor)
{
    const int index = m_auditorList ? m_auditorList->find(auditor) : -1;
    if (index != -1) m_auditorList->remove(index);
}

KsAuditor*& KsFormweave::getAuditor(int index)
{
    if (index >= 0 && index < getAuditorListLength())
        return reinterpret_cast<KsAuditor*&>((*m_auditorList)[index]);
    static KsAuditor* none;
    none = nullptr;
    return none;
}

int KsFormweave::getAuditorListLength() const
{
    return m_auditorList ? m_auditorList->getLength() : 0;
}

void KsFormweave::setBuilt3D(int built)
{
    if (built && !m_built3D) elementsIn3D().insert(this);
    if (!built && m_built3D) elementsIn3D().erase(this);
    m_built3D = built;
}

void KsFormweave::refreshAll3DSkins()
{
    // The outermost built elements pass it down to what they hold.
    std::vector<KsRef<KsFormweave>> outermost;
    for (KsFormweave* element : elementsIn3D()) {
        KsFormweave* parent = element->m_parent;
        if (!parent || !parent->is3DLive()) outermost.emplace_back(element);
    }
    for (const auto& element : outermost) element->refresh3DSkin();
}

void KsFormweave::refresh3DSkin() { m_labelCachedBBox = staleBox(); }

void KsFormweave::change3DWidgetEnable(int enabled)
{
    paintEnabled(enabled && enable.getValue(), KsPickStyle::SHAPE);
}

void KsFormweave::change3DEnable() { paintEnabled(enable.getValue(), KsPickStyle::BOUNDING_BOX); }

void KsFormweave::paintEnabled(bool enabled, int enabledPickStyle)
{
    if (!m_pickStyle || !m_material) return;
    const float grey = enabled ? 0.0f : 0.5f;
    m_pickStyle->style.setValue(enabled ? enabledPickStyle : KsPickStyle::UNPICKABLE);
    m_material->emissiveColor.setValue(KbColor(grey, grey, grey));
}

void KsFormweave::change3DLabel() { m_labelCachedBBox = staleBox(); }

void KsFormweave::set3DInactive()
{
    if (m_lastActive == this) m_lastActive = nullptr;
}

void KsFormweave::set3DCurrentActive(KsFormweave* node)
{
    if (m_lastActive && m_lastActive != node) {
        KsRef<KsFormweave> last(m_lastActive);
        last->set3DInactive();
    }
    m_lastActive = node;
}

void KsFormweave::destroy()
{
    destroyByRef(this);
    KsBase::destroy();
}
