// Placement in a scene.

#include "KsSkinFamily.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsTopLevelDialog.h>

#include <algorithm>

void KsFormweave::create3DFormweave()
{
    m_bboxAction = std::make_unique<KsGetBoundingBoxAction>(KbViewportRegion());
    m_searchAction = std::make_unique<KsSearchAction>();
    m_matrixAction = std::make_unique<KsGetMatrixAction>(KbViewportRegion());
    m_pickStyle = new KsPickStyle;
    m_material = new KsMaterial;
    m_labelCachedBBox = staleBox();
}

void KsFormweave::detachFromUnbuiltTop(KsFormweave* top)
{
    if (top && !top->isBuilt3D() && top != this) top->setCanBeTraversed(0);
}

void KsFormweave::show3D(int show)
{
    setSwitchValue(getAnyPart("geomSwitch", false), show ? KsSwitch::ALL : KsSwitch::NONE);
    m_show3D = show;
}

void KsFormweave::apply3DParentTranslation()
{
    auto* geometry = ksCast<KsGroup>(getAnyPart("geomSeparator", true));
    if (!geometry) return;
    m_parentTranslationNode = new KsTranslation;
    geometry->insertChild(m_parentTranslationNode.get(), 0);
    m_parentTranslationNode->translation = m_parentTranslation;
}

void KsFormweave::set3DParentTranslation(KbVec3f& translation)
{
    m_parentTranslation = translation;
    if (m_parentTranslationNode) m_parentTranslationNode->translation = translation;
}

void KsFormweave::undoTransformMatrix(KsNode* node, KsTransform* transform)
{
    if (!node || !transform || !m_searchAction || !m_matrixAction) return;
    // What stands behind `node` must stand on top of all that is in it: the matrix at the last
    // node that is traversed below it.
    m_searchAction->reset();
    m_searchAction->setInterest(KsSearchAction::LAST);
    m_searchAction->setType(KsNode::getClassTypeId(), true);
    m_searchAction->apply(node);
    KsPath* last = m_searchAction->getPath();
    if (!last) return;
    m_matrixAction->apply(last);
    KbVec3f translation, scale;
    KbRotation rotation, scaleOrientation;
    m_matrixAction->getMatrix().getTransform(translation, rotation, scale, scaleOrientation);
    KbMatrix matrix;
    matrix.setTransform(translation, rotation, KbVec3f(1, 1, 1));
    transform->setMatrix(matrix);
    m_searchAction->reset();
}

float KsFormweave::compute3DDepth(KsNode* node)
{
    KsRef<KsTransform> transform(new KsTransform);
    undoTransformMatrix(node, transform.get());
    return transform->translation.getValue()[2];
}

void KsFormweave::apply3DTranslation(KsNode* node, float& depth, KbVec3f& v)
{
    if (depth == -1.0f) depth = compute3DDepth(node);
    v += KbVec3f(0, 0, depth);
    v += m_parentTranslation;
}

// What elements are made of.

void KsFormweave::dress3D(KsSkinFamily* family, std::initializer_list<PartLook> looks)
{
    loadFontProperties();
    if (family) family->loadOnce();
    for (const PartLook& look : looks) setPartFromSkin(look.part, look.skinName);
}

void KsFormweave::insertFirst(KsNode* node, const char* part)
{
    static_cast<KsGroup*>(getAnyPart(part, true))->insertChild(node, 0);
}

int KsFormweave::placeBeside(KsGroup*& group, const char* part)
{
    const KsNode* node = getAnyPart(part, true);
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    const KbName parent = catalog->getName(catalog->getParent(catalog->getPartNumber(part)));
    group = static_cast<KsGroup*>(getAnyPart(parent, true));
    return group->findChild(node);
}

void KsFormweave::insertBefore(KsNode* node, const char* part)
{
    KsGroup* group = nullptr;
    const int place = placeBeside(group, part);
    group->insertChild(node, place);
}

void KsFormweave::insertBehind(KsNode* node, const char* part)
{
    KsGroup* group = nullptr;
    const int place = placeBeside(group, part) + 1;
    group->insertChild(node, place);
}

void KsFormweave::create3DText(SceneText& text, const char* part)
{
    putFirst(text.translation, part);
    text.text = new KsText3;
    text.text->parts = KsText3::FRONT;
    static_cast<KsGroup*>(getAnyPart(part, true))->addChild(text.text.get());
    text.box = staleBox();
}

void KsFormweave::show3DText(SceneText& text, const KbString& s)
{
    showText3D(text.text.get(), s);
    text.box = staleBox();
}

const KbBox3f& KsFormweave::textBox3D(SceneText& text, const char* properties)
{
    if (text.box == staleBox())
        text.box = measure3DText(getAnyPart(properties, false), text.text.get());
    return text.box;
}

float KsFormweave::centreY(const KbBox3f& box) { return -(box.getMax()[1] + box.getMin()[1]) / 2; }

bool KsFormweave::isPicked(std::initializer_list<const char*> parts)
{
    const KsPath* path = getPickPath();
    return path && std::any_of(parts.begin(), parts.end(), [&](const char* part) {
               const KsNode* node = getAnyPart(part, false);
               return node && path->containsNode(node);
           });
}

void KsFormweave::release3DParts(std::initializer_list<const char*> switches)
{
    for (const char* part : switches) {
        auto* looks = ksCast<KsSwitch>(getAnyPart(part, false));
        if (looks && looks->whichChild == 1) looks->whichChild = 0;
    }
}

void KsFormweave::dragLost()
{
    // A viewer may end its drag when the library has ended.
    if (!isInitialized()) return;
    const KsKeepAlive keep(this);
    abandonDrag3D();
}

void KsFormweave::closeOther3D()
{
    set3DCurrentActive(this);
    set3DInactive();
}

void KsFormweave::closeOnPressElsewhere()
{
    auto* group = ksCast<KsGroup>(getAnyPart("topSeparator", true));
    if (!group || m_pressListener) return;
    m_pressListener = new KsEventCallback;
    m_pressListener->addEventCallback(KsEvent::getClassTypeId(), pressedCB, this);
    group->addChild(m_pressListener.get());
}

void KsFormweave::pressedCB(void* data, KsEventCallback* node)
{
    auto* element = static_cast<KsFormweave*>(data);
    if (m_lastActive != element || !isPress(node->getEvent())) return;
    const KsPickedPoint* hit = node->getPickedPoint();
    const KsPath* path = hit ? hit->getPath() : nullptr;
    int index = path ? path->findNode(element) : -1;
    // A panel that is launched from within the element is elsewhere.
    while (const KsNode* below = index < 0 ? nullptr : path->getNode(++index)) {
        if (below->isOfType(KsTopLevelDialog::getClassTypeId())) index = -1;
    }
    if (index < 0) set3DCurrentActive(nullptr);
}
