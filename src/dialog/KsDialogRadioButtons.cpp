#include <formweave/KsDialogRadioButtons.h>

#include "../qt/KsDialogQRadioButtons.h"
#include "KsControlParts.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>

KS_KIT_SOURCE(KsDialogRadioButtons, KsDialogChoice)

KS_SKIN_SOURCE(KsDialogRadioButtons, DialogRadioButtons, "DialogRadioButtons.arb",
               "DialogRadioButtonsFrame", "DialogRadioButtonsItemFrame",
               "DialogRadioButtonsStateOff", "DialogRadioButtonsStateOn")

#define BALL "  Material { diffuseColor 1 1 1 }\n  Sphere { radius 0.5 }\n"
#define DOT                                                                                        \
    "  Translation { translation 0 0 0.4 }\n  BaseColor { rgb 0 0 0 }\n  Sphere { radius 0.2 }\n"

char* KsDialogRadioButtons::DialogRadioButtons = const_cast<char*>(
    KS_SKIN_PART("DialogRadioButtonsFrame", KS_SKIN_CLOSED_BOX("0.8 0.8 0.8"))
        KS_SKIN_PART("DialogRadioButtonsItemFrame", KS_SKIN_CLOSED_BOX("0.7 0.7 0.7"))
            KS_SKIN_PART("DialogRadioButtonsStateOff", BALL)
                KS_SKIN_PART("DialogRadioButtonsStateOn", BALL DOT));

namespace {

constexpr int titleRoom = 30;   // what the title and the frame take of the height
constexpr int titleMargin = 24; // beside the title
constexpr int itemMargin = 48;  // beside an item, its button included
constexpr int leastRowHeight = 16;
constexpr float buttonSize = 12;

/// How far texts in the middles of rows of one height move downward so that none overlaps the next,
/// and all together as little as can be (by squares). Nothing if there is no room for all.
std::vector<float> makeWay(const std::vector<float>& heights, float rowHeight)
{
    struct Group { // of texts without a gap between them
        float sum;
        float count;
        float lead() const { return sum / count; }
    };
    std::vector<float> moves(heights.size());
    std::vector<Group> groups;
    // Where the middle of each row is, were the texts in front of it not there.
    std::vector<float> leads;
    float above = 0;
    for (const float h : heights) {
        const float middle = (static_cast<float>(leads.size()) + 0.5f) * rowHeight;
        leads.push_back(middle - above - h / 2);
        above += h;
        groups.push_back({leads.back(), 1});
        while (groups.size() > 1 && groups[groups.size() - 2].lead() > groups.back().lead()) {
            const Group last = groups.back();
            groups.pop_back();
            groups.back().sum += last.sum;
            groups.back().count += last.count;
        }
    }
    const float room = static_cast<float>(heights.size()) * rowHeight - above;
    if (room < 0) return moves;
    std::size_t i = 0;
    for (const Group& group : groups)
        for (float n = 0; n < group.count; ++n, ++i)
            moves[i] = std::clamp(group.lead(), 0.0f, room) - leads[i];
    return moves;
}

} // namespace

KsDialogRadioButtons::KsDialogRadioButtons()
{
    KsInstanceBuilder build(classRecord, this);
    labelAlignment.initValue(LEFT);
    ksAddParts(build, {{"frameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frame", KsPartKind::Look, "frameSep"}});
    ksAddLabelParts(build);
    ksAddParts(build, {{"itemsSep", KsPartKind::Switch, "geomSwitch"},
                       {"itemSep", KsPartKind::Separator, "itemsSep"},
                       {"itemFrameSep", KsPartKind::Separator, "itemSep"},
                       {"itemFrame", KsPartKind::Look, "itemFrameSep"},
                       {"itemBtnSep", KsPartKind::Separator, "itemSep"},
                       {"itemBtnSwtch", KsPartKind::Switch, "itemBtnSep"},
                       {"stateOff", KsPartKind::Look, "itemBtnSwtch"},
                       {"stateOn", KsPartKind::Look, "itemBtnSwtch"},
                       {"itemTextSep", KsPartKind::Separator, "itemSep"},
                       {"itemTextProp", KsPartKind::Look, "itemTextSep"}});
}

KsDialogRadioButtons::~KsDialogRadioButtons() = default;

// Sizes.

void KsDialogRadioButtons::resetSize()
{
    m_rowSizes.clear();
    m_rowsFrame.setValue(0, 0);
    m_itemsSize.setValue(0, 0);
    // The limits that nobody asked for are those of another number of rows.
    for (KsSFInt32* limit : {&minHeight, &maxHeight})
        if (limit->isDefault()) limit->initValue(0);
    KsDialogChoice::resetSize();
}

KbVec2i32 KsDialogRadioButtons::getComponentInitSize()
{
    KbVec2i32 title(0, 0);
    if (labelVisibility) title = getLabelPixelSize(label, nullptr);
    title[0] += titleMargin;
    fixItemsNumber();
    int widest = 0;
    std::int64_t heights = 0;
    for (int i = 0; i < getVisibleCount(); ++i) {
        const KbVec2i32 item = getLabelPixelSize(items[i], nullptr);
        widest = std::max(widest, item[0]);
        heights += item[1];
    }
    m_itemsSize.setValue(widest + itemMargin, ksBounded(heights + titleRoom));
    // A wider title counts as a whole, with its height: forms rely on it.
    KbVec2i32 size = title[0] > m_itemsSize[0] ? title : m_itemsSize;
    size[0] -= m_labelSize[0] - zoneGap;
    return size;
}

KbVec2i32 KsDialogRadioButtons::getLabelInitSize() { return {0, 0}; }

void KsDialogRadioButtons::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    KsDialogChoice::getDefaultSize(size, min, max);
    size = m_componentSize;
    size[1] = std::max(size[1], m_itemsSize[1]);
    min.setValue(100, getVisibleCount() * leastRowHeight + 28);
}

void KsDialogRadioButtons::computeNewButtonsHeight(const KbVec2i32& size)
{
    const int rows = getVisibleCount();
    if (m_rowsFrame == size && m_rowSizes.count() == rows) return;
    m_rowsFrame = size;
    m_rowSizes.setCount(rows);
    std::int64_t total = 0;
    for (int i = 0; i < rows; ++i) {
        const KbVec2i32 item = getLabelPixelSize(items[i], nullptr);
        total += item[1];
        const KbVec2i32 min(minWidth - 28, leastRowHeight);
        const KbVec2i32 max(maxWidth ? maxWidth.getValue() : KsSizeDB::openLimit,
                            maxHeight ? (maxHeight - titleRoom) / rows : KsSizeDB::openLimit);
        // A row that grows or shrinks stays clear of its limits.
        m_rowSizes[i].min = min + KbVec2i32(1, 1);
        m_rowSizes[i].max = max - KbVec2i32(1, 1);
        m_rowSizes[i].init.setValue(std::max(item[0], min[0]), std::max(item[1], min[1]));
    }
    m_rowSizes.share(1, ksBounded(size[1] - titleRoom - total));
}

// The window.

QWidget* KsDialogRadioButtons::getLabelWidget() { return m_labelWidget; }

void KsDialogRadioButtons::createLabelWidget()
{
    installRelay(new KsDialogQRadioButtons(relayParent(), this), [this] {
        m_labelWidget = m_widget;
        changeLabel();
        changeLabelAlignment();
        changeItems();
        changeEdgeStyle();
        KsDialogComponent::changeEnable();
        limitFrame(m_widget, FROM_SIZE);
    });
}

void KsDialogRadioButtons::updateLabelWidget()
{
    if (auto* relay = relayAs<KsDialogQRadioButtons>()) {
        const KbVec2i32 frame = size2D();
        relay->updateLabelWidget(frameMargin, frameMargin, frame[0] - 2 * frameMargin,
                                 frame[1] - 2 * frameMargin);
    }
}

void KsDialogRadioButtons::changeLabel()
{
    if (auto* relay = relayAs<KsDialogQRadioButtons>())
        relay->changeLabel(labelVisibility ? ksShownQString(convertToCString(label, nullptr))
                                           : QString());
}

void KsDialogRadioButtons::changeLabelVisibility() { changeLabel(); }

void KsDialogRadioButtons::changeItems()
{
    fixItemsNumber();
    auto* relay = relayAs<KsDialogQRadioButtons>();
    if (!relay) return;
    const int present = relay->numRadioButtons();
    for (int i = 0; i < getVisibleCount(); ++i) {
        if (i >= present) relay->addRadioButton(i);
        relay->changeItemText(i, ksShownQString(items[i]));
        if (i >= present && i == selectedItem) relay->changeSelectedItem(i);
    }
    while (relay->numRadioButtons() > m_numItems) relay->removeLastRadioButton();
    // Of a list that became empty one button stays, as blank as the filler in the field.
    if (!getVisibleCount()) relay->changeItemText(0, QString());
    updateBoth(this, &KsDialogRadioButtons::changeSelectedItem,
               &KsDialogRadioButtons::change3DSelectedItem);
}

void KsDialogRadioButtons::changeSelectedItem()
{
    const int last = std::max(m_numItems - 1, 0);
    if (selectedItem < 0 || selectedItem > last)
        ksWriteSilently(m_selectedItemSensor, selectedItem, std::clamp<int>(selectedItem, 0, last));
    if (auto* relay = relayAs<KsDialogQRadioButtons>()) relay->changeSelectedItem(selectedItem);
}

// The scene.

void KsDialogRadioButtons::create3DControl()
{
    dress3D(&skinFamily(), {{"frame", "DialogRadioButtonsFrame"},
                            {"labelProp", "DialogTextProperties"},
                            {"itemFrame", "DialogRadioButtonsItemFrame"},
                            {"stateOff", "DialogRadioButtonsStateOff"},
                            {"stateOn", "DialogRadioButtonsStateOn"},
                            {"itemTextProp", "DialogTextProperties"}});
    putFirst(m_frameScale, "frameSep");
    putBefore(m_labelTransform, "labelSep");
    create3DLabel();
    getAnyPart("itemsSep", true)->setName("itemsSep");
    putBefore(m_itemsTranslation, "itemsSep");
    putFirst(m_itemStep, "itemsSep");
    putFirst(m_itemFrameScale, "itemFrameSep");
    putBefore(m_itemTransform, "itemBtnSep");
    putFirst(m_itemBtnScale, "itemBtnSep");
    putFirst(m_itemBtnTranslation, "itemBtnSep");
    m_itemBtnScale->scaleFactor = KbVec3f(buttonSize, buttonSize, 1);
    create3DText(m_itemText, "itemTextSep");
    m_itemText.translation->setName("radioItemTextTranslation");
    // The first row is the catalog's.
    m_rows.push_back({KsRef<KsNode>(getAnyPart("itemSep", true)), m_itemText.text});
    m_btnSwitches.emplace_back(static_cast<KsSwitch*>(getAnyPart("itemBtnSwtch", true)));
    change3DItems();
    change3DSelectedItem();
    addFinishCallback(finishCB3D);
    setBuilt3D(1);
}

void KsDialogRadioButtons::update3DControl()
{
    const KbVec2i32 frame = size3D();
    computeNewButtonsHeight(frame);
    const int rows = m_rowSizes.count();
    if (!rows) return;
    // All rows are equally high.
    float sum = 0;
    for (int i = 0; i < rows; ++i) sum += static_cast<float>(m_rowSizes[i].init[1]);
    const float rowHeight = sum / static_cast<float>(rows);
    const float w = static_cast<float>(frame[0] - 20);
    m_itemStep->translation = KbVec3f(0, -rowHeight, 0);
    m_itemsTranslation->translation =
        KbVec3f(0, static_cast<float>(frame[1] - 2 * frameMargin) / 2 - 20 + rowHeight / 2, 0);
    m_itemFrameScale->scaleFactor = KbVec3f(w, rowHeight, 1);
    undoTransformMatrix(getAnyPart("itemFrameSep", false), m_itemTransform.get());
    m_itemBtnTranslation->translation = KbVec3f(-w / 2 + 14, 0, 0);
    placeTexts3D();
}

void KsDialogRadioButtons::placeTexts3D()
{
    const float w = static_cast<float>(size3D()[0] - 20);
    m_itemText.translation->translation =
        KbVec3f(-w / 2 + 24, centreY(textBox3D(m_itemText, "itemTextProp")), 0);
    shift3DTexts();
}

void KsDialogRadioButtons::shift3DTexts()
{
    // What is shared is the middle for the first row, and for those of as many lines.
    const auto numLines = [](const SceneRow& row) { return row.text->string.getNum(); };
    std::map<int, KbBox3f> boxes{{numLines(m_rows[0]), m_itemText.box}};
    for (const SceneRow& row : m_rows) {
        const auto [box, isNew] = boxes.try_emplace(numLines(row));
        if (isNew) box->second = measure3DText(getAnyPart("itemTextProp", false), row.text);
    }
    const float rowHeight = -m_itemStep->translation.getValue()[1];
    std::vector<float> heights;
    for (const SceneRow& row : m_rows) {
        const KbBox3f& box = boxes.at(numLines(row));
        heights.push_back(box.getMax()[1] - box.getMin()[1]);
    }
    const std::vector<float> down =
        boxes.size() > 1 ? makeWay(heights, rowHeight) : std::vector<float>(heights.size());
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const float centre = centreY(boxes.at(numLines(m_rows[i]))) - centreY(m_itemText.box);
        shift3DText(m_rows[i], centre - down[i]);
    }
}

void KsDialogRadioButtons::shift3DText(const SceneRow& row, float y)
{
    const auto* content = static_cast<KsGroup*>(row.node.get());
    auto* line = static_cast<KsGroup*>(content->getChild(content->getNumChildren() - 1));
    const int place = line->findChild(row.text);
    auto* shift = ksCast<KsTranslation>(line->getChild(place - 1));
    if (!shift && y == 0) return;
    if (!shift) line->insertChild(shift = new KsTranslation, place);
    shift->translation = KbVec3f(0, y, 0);
}

void KsDialogRadioButtons::update3DLabel()
{
    if (!m_frameScale) return;
    const KbVec2i32 frame = size3D();
    m_frameScale->scaleFactor = KbVec3f(static_cast<float>(frame[0] - 2 * frameMargin),
                                        static_cast<float>(frame[1] - 2 * frameMargin), 1);
    change3DLabelAlignment();
    undoTransformMatrix(getAnyPart("frameSep", false), m_labelTransform.get());
}

void KsDialogRadioButtons::change3DLabelAlignment()
{
    if (!m_label3D.text) return;
    const KbBox3f box = labelBox3D();
    const KbVec2i32 size = size3D();
    const float half = static_cast<float>(size[0] - 2 * frameMargin) / 2;
    const float text = box.getMax()[0] - box.getMin()[0];
    const int alignment = labelAlignment;
    const float x = alignment == CENTER  ? -text / 2
                    : alignment == RIGHT ? half - text - 8
                                         : 8 - half;
    m_label3D.translation->translation = KbVec3f(
        std::trunc(x), static_cast<float>(size[1] - 2 * frameMargin) / 2 - 12 + centreY(box), 0);
}

KsDialogChoice::SceneRow KsDialogRadioButtons::makeRow3D()
{
    SceneRow row;
    auto* content = new KsSeparator;
    row.node = content;
    content->addChild(getAnyPart("itemFrameSep", true));
    content->addChild(m_itemTransform.get());
    auto* button = new KsSeparator;
    content->addChild(button);
    button->addChild(m_itemBtnTranslation.get());
    button->addChild(m_itemBtnScale.get());
    auto* state = new KsSwitch;
    button->addChild(state);
    state->whichChild = 0;
    state->addChild(getAnyPart("stateOff", true));
    state->addChild(getAnyPart("stateOn", true));
    m_btnSwitches.emplace_back(state);
    auto* line = new KsSeparator;
    content->addChild(line);
    line->addChild(m_itemText.translation.get());
    line->addChild(getAnyPart("itemTextProp", true));
    row.text = new KsText3;
    row.text->parts = KsText3::FRONT;
    line->addChild(row.text.get());
    return row;
}

void KsDialogRadioButtons::change3DItems()
{
    if (m_rows.empty()) return;
    updateRows(static_cast<KsGroup*>(getAnyPart("itemsSep", true)), m_itemStep.get(),
               [this] { return makeRow3D(); });
    m_btnSwitches.resize(m_rows.size());
    for (int i = 0; i < getVisibleCount(); ++i)
        if (items[i].find("\n") != KbString::npos)
            showText3D(m_rows[static_cast<std::size_t>(i)].text, items[i]);
    setSwitchValue(getAnyPart("itemsSep", false),
                   getVisibleCount() ? KsSwitch::ALL : KsSwitch::NONE);
    m_itemText.box = staleBox();
    if (isBuilt3D()) placeTexts3D();
    layoutAfter3DItems();
    updateBoth(this, &KsDialogRadioButtons::changeSelectedItem,
               &KsDialogRadioButtons::change3DSelectedItem);
}

void KsDialogRadioButtons::change3DSelectedItem()
{
    repairSelection();
    for (std::size_t i = 0; i < m_btnSwitches.size(); ++i)
        setSwitchValue(m_btnSwitches[i].get(), static_cast<int>(i) == selectedItem ? 1 : 0);
}

void KsDialogRadioButtons::refresh3DSkin()
{
    m_itemText.box = staleBox();
    KsDialogChoice::refresh3DSkin();
}

void KsDialogRadioButtons::finishCB3D(void*, KsDragger* dragger)
{
    auto* self = static_cast<KsDialogRadioButtons*>(dragger);
    if (self->isPicked({"itemsSep"})) self->draggerFinishCallback3D();
}

void KsDialogRadioButtons::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    closeOther3D();
    const int row = findPickedRow(getPickPath());
    choose3D(row < 0 ? selectedItem.getValue() : row);
    applyDlgCptAuditor();
}
