#include <formweave/KsMenuSeparator.h>

#include "KsControlParts.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsScale.h>

#include <QMenu>

KS_KIT_SOURCE(KsMenuSeparator, KsMenuItem)

KS_SKIN_SOURCE(KsMenuSeparator, MenuSeparator, "MenuSeparator.arb", "MenuSeparatorFrame")

char* KsMenuSeparator::MenuSeparator =
    const_cast<char*>(KS_SKIN_PART("MenuSeparatorFrame", KS_SKIN_OPEN_BOX("0.6 0.6 0.6")));

namespace {

constexpr int width = 16;
constexpr int height = 8;
constexpr int border = 3; // around the line

} // namespace

KsMenuSeparator::KsMenuSeparator()
{
    KsInstanceBuilder build(classRecord, this);
    ksAddParts(build, {{"sepSep", KsPartKind::Separator, "geomSwitch"},
                       {"sepFrame", KsPartKind::Look, "sepSep"}});
}

KsMenuSeparator::~KsMenuSeparator() { removeLines(); }

void KsMenuSeparator::updateFromSensor(KsSensor*) {}

KbVec2i32 KsMenuSeparator::getItemInitSize() { return {width, height}; }

void KsMenuSeparator::setItemSize(KbVec2i32 size, int force)
{
    if (force || m_itemSize == KbVec2i32(0, 0)) m_itemSize.setValue(size[0], height);
}

// The window.

void KsMenuSeparator::insertMenuItem()
{
    if (auto* menu = qobject_cast<QMenu*>(parentMenu())) m_lines.emplace_back(menu->addSeparator());
}

void KsMenuSeparator::removeLines()
{
    for (const auto& line : m_lines) delete line.data();
    m_lines.clear();
}

void KsMenuSeparator::destroyWidget()
{
    removeLines();
    KsMenuItem::destroyWidget();
}

// The scene.

void KsMenuSeparator::create3DEntry()
{
    dress3D(&skinFamily(), {{"sepFrame", "MenuSeparatorFrame"}});
    putFirst(m_lineScale, "sepSep");
    auto* geometry = static_cast<KsGroup*>(getAnyPart("geomSwitch", true));
    geometry->removeChild(geometry->findChild(getAnyPart("labelSep", true)));
}

void KsMenuSeparator::update3DEntry()
{
    m_lineScale->scaleFactor = KbVec3f(static_cast<float>(m_itemSize[0] - 2 * border),
                                       static_cast<float>(m_itemSize[1] - 2 * border), 1);
}
