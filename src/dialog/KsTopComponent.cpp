#include <formweave/KsTopComponent.h>

#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>

KS_KIT_SOURCE(KsTopComponent, KsFormweave)

KsTopComponent::KsTopComponent() { KsInstanceBuilder build(classRecord, this); }

KsTopComponent::~KsTopComponent() = default;

void KsTopComponent::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D)
{
    KsFormweave::buildWidget(parent, size, position, build2D);
}

void KsTopComponent::destroyWidget() { KsFormweave::destroyWidget(); }

void KsTopComponent::updateFromSensor(KsSensor* sensor) { KsFormweave::updateFromSensor(sensor); }

void KsTopComponent::getSize(KbVec2i32&, KbVec2i32&, KbVec2i32&) {}

void KsTopComponent::addTranslation(KsTranslation* translation)
{
    auto* geometry = ksCast<KsGroup>(getAnyPart("geomSwitch", true));
    if (!geometry || !translation) return;
    auto* first =
        geometry->getNumChildren() ? ksCast<KsTranslation>(geometry->getChild(0)) : nullptr;
    if (first && first->getName() == KbName("parentPositionTranslation"))
        first->translation = translation->translation;
    else
        geometry->insertChild(translation, 0);
}
