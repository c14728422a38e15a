#include <formweave/KsMenuItem.h>

#include "../qt/KsMenuRelay.h"
#include "KsControlParts.h"
#include "KsSkinFamily.h"
#include "KsTextLimits.h"

#include <arborium/kits/KsNodekitCatalog.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsMenuBar.h>

#include <algorithm>

KS_KIT_SOURCE(KsMenuItem, KsFormweave)

KS_SKIN_SOURCE(KsMenuItem, MenuItem, "MenuItem.arb", "MenuItemFrame")

char* KsMenuItem::MenuItem =
    const_cast<char*>(KS_SKIN_PART("MenuItemFrame", KS_SKIN_BASE_BOX("0.7 0.8 0.7")));

namespace {

constexpr int labelRoom = 8; // beside the text
constexpr float toggleSize = 14;

// Shared by all entries of the process.
int nextId = 1;

struct Modifier {
    std::u16string_view token;
    int weight;
};
// In the order in which they are looked for.
constexpr Modifier modifiers[] = {{u"Ctrl", 1},  {u"CTRL", 1},  {u"ctrl", 1},  {u"Ctl", 1},
                                  {u"Shift", 2}, {u"SHIFT", 2}, {u"shift", 2}, {u"Meta", 4},
                                  {u"META", 4},  {u"Alt", 8},   {u"ALT", 8},   {u"alt", 8}};

/// Cuts each occurrence of `token` out of `text`, also those that come to be by a cut. How many.
int cutAll(std::u16string& text, std::u16string_view token)
{
    int cuts = 0;
    std::u16string kept;
    kept.reserve(text.size());
    for (const char16_t c : text) {
        kept += c;
        if (kept.size() < token.size() ||
            kept.compare(kept.size() - token.size(), token.size(), token) != 0)
            continue;
        kept.resize(kept.size() - token.size());
        ++cuts;
    }
    text.swap(kept);
    return cuts;
}

} // namespace

KsMenuItem::KsMenuItem()
{
    KsInstanceBuilder build(classRecord, this);
    ksAddParts(build, {{"itemFrameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frame", KsPartKind::Look, "itemFrameSep"},
                       {"labelSep", KsPartKind::Separator, "geomSwitch"},
                       {"labelProp", KsPartKind::Look, "labelSep"}});
}

KsMenuItem::~KsMenuItem() { removeRelays(); }

void KsMenuItem::menuEvent(void*, int) {}
void KsMenuItem::destroyNoDeleteMenuItem() {}

KsMenuBar* KsMenuItem::getMenuBar()
{
    KsFormweave* above = getParentElement();
    while (above && !above->isOfType(KsMenuBar::getClassTypeId()))
        above = above->getParentElement();
    return static_cast<KsMenuBar*>(above);
}

void KsMenuItem::buildMenu(void* parentMenu, int build2D, int)
{
    const KsKeepAlive keep(this);
    KbVec2i32 size(0, 0), place(0, 0);
    KsFormweave::buildWidget(nullptr, size, place, build2D);
    if (build2D) {
        m_parentMenu = static_cast<QWidget*>(parentMenu);
        insertMenuItem();
    } else {
        if (!isBuilt3D()) create3DItem();
        update3D();
    }
    armSensors();
}

// Sizes.

KbVec2i32 KsMenuItem::getItemInitSize()
{
    return {getLabelPixelSize(label, nullptr)[0] + labelRoom, itemHeight};
}

void KsMenuItem::setItemSize(KbVec2i32 size, int force)
{
    if (!force && m_itemSize != KbVec2i32(0, 0)) return;
    m_itemSize.setValue(size[0], itemHeight);
}

// The window.

QWidget* KsMenuItem::parentMenu() const { return m_parentMenu; }

int KsMenuItem::takeIds(int count)
{
    m_id = nextId;
    nextId += count;
    return m_id;
}

void KsMenuItem::addRelay(KsMenuRelay* relay) { m_relays.emplace_back(relay); }

KsMenuRelay* KsMenuItem::relayAt(int index) const
{
    return index < getRelayCount() ? m_relays[static_cast<std::size_t>(index)].data() : nullptr;
}

void KsMenuItem::removeRelays()
{
    const auto relays = std::move(m_relays);
    m_relays.clear();
    for (const auto& relay : relays) {
        if (relay) relay->retire();
    }
}

void KsMenuItem::destroyWidget()
{
    removeRelays();
    m_parentMenu = nullptr;
    KsFormweave::destroyWidget();
}

void KsMenuItem::changeEnable()
{
    for (const auto& relay : m_relays) {
        if (relay) relay->changeEnable(enable);
    }
}

void KsMenuItem::showRelayLabel(int relay, const KbString& text)
{
    if (KsMenuRelay* shown = relayAt(relay)) shown->changeLabel(ksShownText(text).getString());
}

void KsMenuItem::showRelayAccelerator(int relay, const KbString& accelerator)
{
    if (KsMenuRelay* shown = relayAt(relay))
        shown->changeAccelerator(getKeyCombination(accelerator, this, 0).getString());
}

// The scene.

void KsMenuItem::create3DItem()
{
    // What only others derive from shows nothing.
    if (getTypeId() == KsMenuItem::getClassTypeId()) {
        setBuilt3D(1);
        return;
    }
    dress3D(&skinFamily(), {{"labelProp", "DialogTextProperties"}});
    if (!isDrawnByBar()) {
        setPartFromSkin("frame", "MenuItemFrame");
        putFirst(m_itemFrame.scale, "itemFrameSep");
        putBefore(m_itemFrame.translation, "itemFrameSep");
        putBehind(m_itemTransform, "itemFrameSep");
        // A press on a disabled entry ends there: it does not reach what stands behind the menu.
        static_cast<KsGroup*>(getAnyPart("itemFrameSep", true))->insertChild(new KsPickStyle, 1);
    }
    create3DText(m_itemText, "labelSep");
    auto* geometry = static_cast<KsGroup*>(getAnyPart("geomSwitch", true));
    geometry->insertChild(m_pickStyle.get(), 0);
    geometry->insertChild(m_material.get(), 0);
    apply3DParentTranslation();
    setItemSize(getItemInitSize(), 0);
    create3DEntry();
    change3DLabel();
    setBuilt3D(1);
    if (!takesInput()) change3DEnable();
    // An entry of a column shows itself as the column does; others as they were told, if what they
    // stand in is shown.
    const bool isInColumn = m_parent && m_parent->isOfType(KsMenuPopup::getClassTypeId());
    show3D((isInColumn || m_show3D) && (!m_parent || m_parent->showsChildren3D()));
}

bool KsMenuItem::isDrawnByBar() const
{
    return m_parent && m_parent->canBeTraversed() &&
           m_parent->isOfType(KsMenuBar::getClassTypeId());
}

void KsMenuItem::takeDown3D()
{
    std::vector<std::pair<KbName, KsRef<KsNode>>> given;
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    for (int part = 0; part < catalog->getNumEntries(); ++part) {
        const KbName name = catalog->getName(part);
        const KsField* field = catalog->isPublic(part) ? getField(name) : nullptr;
        if (field && !field->isDefault()) given.emplace_back(name, getAnyPart(name, false));
    }
    setAnyPart("geomSeparator", nullptr);
    for (const auto& [name, node] : given) setAnyPart(name, node.get());
    m_itemText = SceneText();
    m_itemFrame = SceneFrame();
    m_itemTransform.reset();
    setBuilt3D(0);
}

void KsMenuItem::create3DToggle(SceneFrame& toggle, const char* part)
{
    putFirst(toggle.scale, part);
    toggle.scale->scaleFactor = KbVec3f(toggleSize, toggleSize, 1);
    putFirst(toggle.translation, part);
}

void KsMenuItem::moveLabelToEnd()
{
    auto* geometry = static_cast<KsGroup*>(getAnyPart("geomSwitch", true));
    const KsRef<KsNode> text(getAnyPart("labelSep", true));
    geometry->removeChild(geometry->findChild(text));
    geometry->addChild(text);
}

void KsMenuItem::update3D()
{
    if (!m_itemText.text) return;
    update3DItem();
    update3DEntry();
}

void KsMenuItem::update3DItem()
{
    if (hasItemFrame()) {
        place3DItemFrame(m_itemSize, 0);
        undoTransformMatrix(getAnyPart("itemFrameSep", false), m_itemTransform.get());
    }
    KbVec3f min, max;
    get3DLabelCachedBBox(min, max);
    place3DLabel(-(max[0] - min[0]) / 2, -(max[1] + min[1]) / 2);
}

void KsMenuItem::place3DItemFrame(const KbVec2i32& size, int y)
{
    if (!hasItemFrame()) return;
    m_itemFrame.scale->scaleFactor =
        KbVec3f(static_cast<float>(size[0]), static_cast<float>(size[1]), 1);
    m_itemFrame.translation->translation =
        KbVec3f(static_cast<float>(size[0] / 2), static_cast<float>(y), 0);
}

void KsMenuItem::place3DLabel(float x, float y)
{
    m_itemText.translation->translation = KbVec3f(x, y, 0);
}

void KsMenuItem::change3DLabel()
{
    if (!m_itemText.text) return;
    m_itemText.text->string = ksShownText(shownLabel());
    KsFormweave::change3DLabel();
    if (!isBuilt3D()) return;
    update3D();
    fit3D();
}

void KsMenuItem::fit3D()
{
    const KbVec2i32 wanted = getItemInitSize();
    if (!m_parent) {
        setItemSize(wanted, 1);
        update3D();
        return;
    }
    if (!m_parent->is3DLive()) return;
    auto* bar = ksCast<KsMenuBar>(m_parent);
    auto* popup = ksCast<KsMenuPopup>(m_parent);
    if (bar && wanted != m_itemSize) bar->entriesChanged3D();
    // A column stays as wide as it is when it has room.
    if (popup && (wanted[0] > m_itemSize[0] || wanted[1] != m_itemSize[1]))
        popup->entriesChanged3D();
}

void KsMenuItem::get3DLabelCachedBBox(KbVec3f& min, KbVec3f& max)
{
    if (!isLabelCachedBBox())
        setLabelCacheBBox(measure3DText(getAnyPart("labelProp", false), m_itemText.text.get()));
    const KbBox3f box = getLabelCachedBBox();
    min = box.getMin();
    max = box.getMax();
}

void KsMenuItem::refresh3DSkin()
{
    KsFormweave::refresh3DSkin();
    if (is3DLive()) update3D();
}

bool KsMenuItem::takesPick() { return takesInput() && isPicked({"geomSwitch"}); }

void KsMenuItem::closeMenus3D(KsMenuBar* bar)
{
    if (bar) bar->show3DChildren(0);
}

void KsMenuItem::getBoundingBox(KsGetBoundingBoxAction* action)
{
    buildOn3DTraversal([this] { buildMenu(nullptr, 0, -1); });
    KsDragger::getBoundingBox(action);
}

// Texts.

KbString KsMenuItem::getAccelerator(const KbString& title)
{
    const int tab = title.find("\t");
    return tab < 0 ? KbString() : title.getSubString(tab + 1);
}

KbString KsMenuItem::getKeyCombination(const KbString& accelerator, KsMenuItem*, unsigned int)
{
    std::u16string key = ksShownText(accelerator).toUtf16();
    int sum = 0;
    // The weights are added: a modifier that is written twice counts as another one.
    for (const Modifier& modifier : modifiers) sum += modifier.weight * cutAll(key, modifier.token);
    key.erase(std::remove(key.begin(), key.end(), u'+'), key.end());

    KbString result;
    const auto take = [&](int weight, const char* name) {
        if (sum < weight) return;
        result += name;
        sum -= weight;
    };
    take(8, "Alt+");
    take(4, "Meta+");
    take(2, "Shift+");
    if (sum == 1) result += "Ctrl+";
    return result + KbString::fromUtf16(key);
}

char KsMenuItem::buildTitleForMotifMenu(const KbString& title, KbString& plain)
{
    const std::string& text = title.toLatin1();
    const std::size_t end = std::min(text.find('\t'), text.size());
    std::string copied;
    char mnemonic = 0;
    for (std::size_t i = 0; i < end; ++i) {
        if (text[i] == '&') {
            if (++i == end) break;
            mnemonic = text[i];
        }
        copied += text[i];
    }
    plain = KbString(std::move(copied));
    return mnemonic;
}
