// The tab dialog in a scene.

#include "KsLayouts.h"
#include "KsSkinFamily.h"
#include "KsTextLimits.h"

#include <arborium/actions/KsPath.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsTabDialog.h>

#include <algorithm>

KS_SKIN_SOURCE(KsTabDialog, TabDialog, "TabDialog.arb", "TabDialogSelectedTabFrame",
               "TabDialogUnselectedTabFrame", "TabDialogLeftButtonPressed",
               "TabDialogLeftButtonReleased", "TabDialogRightButtonPressed",
               "TabDialogRightButtonReleased", "TabDialogFrame")

char* KsTabDialog::TabDialog = const_cast<char*>(
    KS_SKIN_PART("TabDialogSelectedTabFrame", KS_SKIN_CLOSED_BOX("0.6 0.6 0.6")) KS_SKIN_PART(
        "TabDialogUnselectedTabFrame",
        "  Material { diffuseColor 0.7 0.7 0.7 } Translation { translation 0 -0.2 0.4 }\n"
        "  Cube { width 1 height 1 depth 0.8 }\n"
        "  Translation { translation 0 0 0.4 }\n")
        KS_SKIN_PART(
            "_TabDialogButtonPressed_",
            KS_SKIN_BEVEL("0.5 0.5 0.5", "1 1 1", "0.2 0.2 0.2", "0.7 0.7 0.7", "0.7 0.7 0.7"))
            KS_SKIN_PART(
                "_TabDialogButtonReleased_",
                KS_SKIN_BEVEL("0.7 0.7 0.7", "0.2 0.2 0.2", "1 1 1", "0.5 0.5 0.5", "0.7 0.7 0.7"))
                KS_SKIN_PART("TabDialogLeftButtonPressed", "  USE _TabDialogButtonPressed_\n")
                    KS_SKIN_PART("TabDialogLeftButtonReleased", "  USE _TabDialogButtonReleased_\n")
                        KS_SKIN_PART("TabDialogRightButtonPressed",
                                     "  USE _TabDialogButtonPressed_\n")
                            KS_SKIN_PART("TabDialogRightButtonReleased",
                                         "  USE _TabDialogButtonReleased_\n")
                                KS_SKIN_PART("TabDialogFrame", KS_SKIN_CLOSED_BOX("0.7 0.7 0.7")));

namespace {

constexpr float tabHeight = 20;
constexpr float inset = 3; // of the frame in the dialog, and of the first tab
constexpr float leastTitle = 25;
constexpr float titleRoom = 14;   // beside the title, on both sides together
constexpr float buttonsRoom = 34; // at the right end of the tabs
constexpr float buttonsInset = 26;
constexpr float buttonsGap = 16; // between the middles
constexpr float buttonSize = 14;
const KbVec2i32 pagePlace(2, 2); // in the frame
constexpr int released = 0;
constexpr int pressed = 1;

} // namespace

void KsTabDialog::create3DControl()
{
    dress3D(&skinFamily(), {{"selected", "TabDialogSelectedTabFrame"},
                            {"unselected", "TabDialogUnselectedTabFrame"},
                            {"textProp", "DialogTextProperties"},
                            {"lButtonPressed", "TabDialogLeftButtonPressed"},
                            {"lButtonReleased", "TabDialogLeftButtonReleased"},
                            {"rButtonPressed", "TabDialogRightButtonPressed"},
                            {"rButtonReleased", "TabDialogRightButtonReleased"},
                            {"frame", "TabDialogFrame"}});
    ScenePage first;
    first.pageSwitch = static_cast<KsSwitch*>(getAnyPart("pageSwitch", true));
    first.labelSwitch = static_cast<KsSwitch*>(getAnyPart("labelSwitch", true));
    first.labelSep = getAnyPart("labelSep", true);
    putFirst(first.translation, "pageSwitch");
    putFirst(first.labelScale, "labelSep");
    putBefore(first.labelTransform, "textSep");
    create3DText(first.title, "textSep");
    m_scenePages.push_back(first);

    putFirst(m_topEdge, "pagesSep");
    putFirst(m_rightEdge, "pagesSep");
    putFirst(m_frame.scale, "frameSep");
    putFirst(m_frame.translation, "frameSep");
    putFirst(m_buttonsTranslation, "buttonsSep");
    KsRef<KsTranslation> apart;
    putBefore(apart, "rButtonSep");
    apart->translation = KbVec3f(buttonsGap, 0, 0);
    KsRef<KsScale> buttonScale;
    putFirst(buttonScale, "lButtonSep");
    buttonScale->scaleFactor = KbVec3f(buttonSize, buttonSize, 1);
    insertFirst(buttonScale.get(), "rButtonSep");

    addStartCallback(startCB3D);
    addFinishCallback(finishCB3D);
    m_3DDepth = -1;
    setBuilt3D(1);
}

void KsTabDialog::update3DControl()
{
    if (m_scenePages.empty()) return;
    const KbVec2i32 size = size3D();
    const float w = static_cast<float>(size[0]);
    const float h = static_cast<float>(size[1]);
    const float frameWidth = w - 2 * inset;
    const float frameHeight = h - 2 * inset - tabHeight;
    place3DFrame(m_frame, 0, -tabHeight / 2, frameWidth, frameHeight);
    m_buttonsTranslation->translation =
        KbVec3f(frameWidth / 2 - buttonsInset, (h - 2 * inset - tabHeight) / 2, 0);
    m_rightEdge->plane = KbPlane(KbVec3f(-1, 0, 0), -frameWidth / 2 + buttonsRoom);
    m_topEdge->plane = KbPlane(KbVec3f(0, 1, 0), (frameHeight - tabHeight) / 2);
    change3DPages();
}

KbVec3f KsTabDialog::pagesOrigin()
{
    // Measured apart from the switch above, which may hide all this.
    if (m_3DDepth == -1.0f && m_undoTransform)
        m_3DDepth = m_undoTransform->translation.getValue()[2] +
                    compute3DDepth(getAnyPart("frameSep", false));
    KbVec3f origin(inset, -(tabHeight + inset), 0);
    apply3DTranslation(nullptr, m_3DDepth, origin);
    return origin;
}

KsTabDialog::ScenePage KsTabDialog::makeScenePage()
{
    ScenePage page;
    page.labelScale = new KsScale;
    page.labelSwitch = new KsSwitch;
    page.labelSwitch->addChild(getAnyPart("unselected", true));
    page.labelSwitch->addChild(getAnyPart("selected", true));
    auto* labelSep = new KsSeparator;
    page.labelSep = labelSep;
    labelSep->addChild(page.labelScale.get());
    labelSep->addChild(page.labelSwitch.get());
    page.labelTransform = new KsTransform;
    page.title.translation = new KsTranslation;
    page.title.text = new KsText3;
    page.title.text->parts = KsText3::FRONT;
    auto* textSep = new KsSeparator;
    textSep->addChild(page.title.translation.get());
    textSep->addChild(getAnyPart("textProp", true));
    textSep->addChild(page.title.text.get());
    auto* pageSep = new KsSeparator;
    pageSep->addChild(labelSep);
    pageSep->addChild(page.labelTransform.get());
    pageSep->addChild(textSep);
    page.translation = new KsTranslation;
    page.pageSwitch = new KsSwitch;
    page.pageSwitch->whichChild = KsSwitch::NONE;
    page.pageSwitch->addChild(page.translation.get());
    page.pageSwitch->addChild(pageSep);
    static_cast<KsGroup*>(getAnyPart("pagesSep", true))->addChild(page.pageSwitch.get());
    return page;
}

void KsTabDialog::dropScenePages()
{
    auto* pages = static_cast<KsGroup*>(getAnyPart("pagesSep", true));
    const auto kept = static_cast<std::size_t>(std::max(m_elements.count(), 1));
    while (m_scenePages.size() > kept) {
        pages->removeChild(m_scenePages.back().pageSwitch.get());
        m_scenePages.pop_back();
    }
}

void KsTabDialog::change3DPages()
{
    if (m_scenePages.empty()) return;
    const KsKeepAlive keep(this);
    ++m_scenePagesBuilt;
    m_firstPage = std::clamp(m_firstPage, 0, std::max(m_elements.count() - 1, 0));
    KbVec2i32 inner = size3D();
    fixSizeWithBorder(inner, -1);
    KbVec3f origin = pagesOrigin();
    forEachChild([&](KsDialogComponent* child) {
        child->set3DParentTranslation(origin);
        KbVec2i32 size = inner, place = pagePlace;
        child->buildWidget(nullptr, size, place, 0);
        const int index = m_elements.indexOf(child);
        while (static_cast<int>(m_scenePages.size()) <= index)
            m_scenePages.push_back(makeScenePage());
        update3DTabDialogPage(index);
    });
    dropScenePages();
    const bool empty = m_elements.count() == 0;
    if (empty) setSwitchValue(m_scenePages[0].pageSwitch.get(), KsSwitch::NONE);
    for (const char* button : {"lButtonSwtch", "rButtonSwtch"}) {
        auto* node = static_cast<KsSwitch*>(getAnyPart(button, true));
        if (empty || node->whichChild.getValue() == KsSwitch::NONE)
            setSwitchValue(node, empty ? KsSwitch::NONE : released);
    }
    if (m_build2D) changeSelectedPage();
    if (is3DLive()) change3DSelectedPage();
}

void KsTabDialog::show3DTitle(ScenePage& page, const KsDialogComponent* child)
{
    // A tab is one line high.
    KbString title = ksShownText(child->label);
    if (title == page.shownTitle && page.title.text->string.getNum()) return;
    page.shownTitle = title;
    std::u16string line = title.toUtf16();
    std::replace(line.begin(), line.end(), u'\n', u' ');
    show3DText(page.title, title.isUnicode() ? KbString::fromUtf16(line)
                                             : KbString(std::string(line.begin(), line.end())));
}

void KsTabDialog::update3DTabDialogPage(int index)
{
    ScenePage& page = m_scenePages[static_cast<std::size_t>(index)];
    show3DTitle(page, childAt(index));
    setSwitchValue(page.pageSwitch.get(), KsSwitch::ALL);
    setSwitchValue(page.labelSwitch.get(), index == selectedPage ? 1 : 0);
    const KbBox3f box = textBox3D(page.title, "textProp");
    const float titleWidth = std::max(leastTitle, box.getMax()[0] - box.getMin()[0]);
    page.width = titleWidth + titleRoom;
    page.labelScale->scaleFactor = KbVec3f(page.width, tabHeight, 1);
    place3DTab(index);
    undoTransformMatrix(page.labelSep.get(), page.labelTransform.get());
    page.title.translation->translation = KbVec3f(-titleWidth / 2, centreY(box), 0);
}

void KsTabDialog::place3DTab(int index)
{
    const ScenePage& page = m_scenePages[static_cast<std::size_t>(index)];
    const KbVec2i32 size = size3D();
    if (index == m_firstPage)
        page.translation->translation =
            KbVec3f((2 * inset - static_cast<float>(size[0])) / 2 + page.width / 2,
                    (static_cast<float>(size[1]) - 2 * inset - tabHeight) / 2, 0);
    else if (index > 0)
        page.translation->translation = KbVec3f(
            (m_scenePages[static_cast<std::size_t>(index) - 1].width + page.width) / 2, 0, 0);
}

void KsTabDialog::select3DTab(ScenePage& page, bool selected)
{
    const int look = selected ? 1 : 0;
    if (page.labelSwitch->whichChild.getValue() == look) return;
    setSwitchValue(page.labelSwitch.get(), look);
    undoTransformMatrix(page.labelSep.get(), page.labelTransform.get());
}

void KsTabDialog::show3DPages()
{
    const int selected = selectedPage;
    forEachChild([&](KsDialogComponent* child) {
        const int show = m_show3D && m_elements.indexOf(child) == selected ? 1 : 0;
        if (child->isShown3D() == show) return;
        // What is open or edited in a page goes out of sight with it.
        if (!show && m_lastActive && m_lastActive->isBelow(child)) set3DCurrentActive(nullptr);
        child->show3D(show);
    });
}

void KsTabDialog::show3D(int show)
{
    m_show3D = show;
    show3DPages();
    KsFormweave::show3D(show);
}

void KsTabDialog::change3DSelectedPage()
{
    if (m_scenePages.empty()) return;
    const KsKeepAlive keep(this);
    const int before = m_previousSelectedPage;
    repairSelection();
    show3DPages();

    const float room = static_cast<float>(size3D()[0]) - 2 * inset;
    const int selected = selectedPage;
    const int count = std::min(m_elements.count(), static_cast<int>(m_scenePages.size()));
    // The one that does not fit is cut off before the buttons; those below the buttons are, too.
    int cut = m_firstPage, last = m_firstPage;
    float used = 0;
    for (int i = m_firstPage; i < count && used < room; ++i) {
        used += m_scenePages[static_cast<std::size_t>(i)].width;
        if (used < room) last = i;
        if (used < room - buttonsRoom) cut = i + 1;
    }
    last = std::max(last, cut);
    for (int i = 0; i < count; ++i) {
        ScenePage& page = m_scenePages[static_cast<std::size_t>(i)];
        setSwitchValue(page.pageSwitch.get(),
                       i >= m_firstPage && i <= last ? KsSwitch::ALL : KsSwitch::NONE);
        select3DTab(page, i == selected);
    }
    if (m_tabClicked && cut < count && cut == selected) change3DFirstPageRight();
    if (before != selectedPage) change3DPosition();
}

void KsTabDialog::change3DPosition()
{
    KbVec3f origin = pagesOrigin();
    if (!isPage(selectedPage)) return;
    KsDialogComponent* child = childAt(selectedPage);
    child->set3DParentTranslation(origin);
    child->change3DPosition();
}

void KsTabDialog::change3DWidgetEnable(int enabled)
{
    // The tabs of a disabled container are greyed with what else is in it.
    KsFormweave::change3DWidgetEnable(enabled);
    KsDialogGroup::change3DWidgetEnable(enabled);
}

void KsTabDialog::refresh3DSkin()
{
    for (ScenePage& page : m_scenePages) page.title.box = staleBox();
    KsDialogGroup::refresh3DSkin();
}

// Scrolling.

void KsTabDialog::change3DFirstPageRight()
{
    if (!isPage(0)) return;
    setSwitchValue(getAnyPart("rButtonSwtch", false), released);
    if (m_firstPage < m_elements.count() - 1) ++m_firstPage;
    place3DTab(m_firstPage);
    // What this names is no switch: the tab before goes out of sight below.
    if (m_firstPage > 0)
        setSwitchValue(m_scenePages[static_cast<std::size_t>(m_firstPage) - 1].labelSep.get(),
                       KsSwitch::NONE);
    m_tabClicked = false;
    change3DSelectedPage();
}

void KsTabDialog::change3DFirstPageLeft()
{
    if (!isPage(0)) return;
    setSwitchValue(getAnyPart("lButtonSwtch", false), released);
    if (m_firstPage > 0) --m_firstPage;
    place3DTab(m_firstPage);
    if (m_firstPage < m_elements.count() - 1) place3DTab(m_firstPage + 1);
    m_tabClicked = false;
    change3DSelectedPage();
}

// The person in front of the scene.

void KsTabDialog::startCB3D(void*, KsDragger* dragger)
{
    static_cast<KsTabDialog*>(dragger)->draggerStartCallback3D();
}

void KsTabDialog::finishCB3D(void*, KsDragger* dragger)
{
    static_cast<KsTabDialog*>(dragger)->draggerFinishCallback3D();
}

void KsTabDialog::draggerStartCallback3D()
{
    const KsKeepAlive keep(this);
    set3DCurrentActive(this);
    const KsPath* path = getPickPath();
    if (isPicked({"rButtonSep"})) {
        setSwitchValue(getAnyPart("rButtonSwtch", false), pressed);
    } else if (isPicked({"lButtonSep"})) {
        setSwitchValue(getAnyPart("lButtonSwtch", false), pressed);
    } else if (isPicked({"pagesSep"})) {
        int clicked = -1;
        for (std::size_t i = 0; i < m_scenePages.size(); ++i) {
            if (path->containsNode(m_scenePages[i].pageSwitch.get())) clicked = static_cast<int>(i);
        }
        if (!isPage(clicked) || clicked == selectedPage) return;
        ksWriteSilently(m_selectedPageSensor, selectedPage, clicked);
        m_tabClicked = true;
        updateBoth(this, &KsTabDialog::changeSelectedPage, &KsTabDialog::change3DSelectedPage);
        m_tabClicked = false;
    }
}

void KsTabDialog::abandonDrag3D() { release3DParts({"lButtonSwtch", "rButtonSwtch"}); }

void KsTabDialog::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    if (isPicked({"rButtonSep"})) {
        if (m_build2D) changeFirstPageRight();
        if (is3DLive()) change3DFirstPageRight();
    } else if (isPicked({"lButtonSep"})) {
        if (m_build2D) changeFirstPageLeft();
        if (is3DLive()) change3DFirstPageLeft();
    }
}
