#include <arborium/kits/KsBaseKit.h>
#include <arborium/kits/KsDragger.h>
#include <arborium/kits/KsInteractionKit.h>
#include <arborium/nodes/KsBaseColor.h>
#include <arborium/nodes/KsCamera.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsCone.h>
#include <arborium/nodes/KsCoordinate3.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsCylinder.h>
#include <arborium/nodes/KsDirectionalLight.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsFaceSet.h>
#include <arborium/nodes/KsFile.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsIndexedFaceSet.h>
#include <arborium/nodes/KsIndexedLineSet.h>
#include <arborium/nodes/KsLight.h>
#include <arborium/nodes/KsLightModel.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsMatrixTransform.h>
#include <arborium/nodes/KsNormal.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsPointLight.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsShape.h>
#include <arborium/nodes/KsShapeHints.h>
#include <arborium/nodes/KsSphere.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTexture2.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTransformation.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/nodes/KsVertexProperty.h>
#include <arborium/nodes/KsVertexShape.h>

#include <iterator>

namespace {

struct NodeClass {
    void (*init)();
    void (*exit)();
};
template <class T> constexpr NodeClass of() { return {&T::initClass, &T::exitClass}; }

/// Each class behind the one that it derives from.
constexpr NodeClass s_classes[] = {
    of<KsNode>(),

    of<KsGroup>(),
    of<KsSeparator>(),
    of<KsSwitch>(),
    of<KsFile>(),

    of<KsTransformation>(),
    of<KsTranslation>(),
    of<KsRotation>(),
    of<KsScale>(),
    of<KsTransform>(),
    of<KsMatrixTransform>(),

    of<KsMaterial>(),
    of<KsBaseColor>(),
    of<KsLightModel>(),
    of<KsTexture2>(),
    of<KsFont>(),
    of<KsShapeHints>(),
    of<KsPickStyle>(),
    of<KsClipPlane>(),

    of<KsLight>(),
    of<KsDirectionalLight>(),
    of<KsPointLight>(),
    of<KsCamera>(),
    of<KsOrthographicCamera>(),
    of<KsPerspectiveCamera>(),
    of<KsEventCallback>(),

    of<KsCoordinate3>(),
    of<KsNormal>(),
    of<KsVertexProperty>(),
    of<KsShape>(),
    of<KsCube>(),
    of<KsSphere>(),
    of<KsCone>(),
    of<KsCylinder>(),
    of<KsVertexShape>(),
    of<KsFaceSet>(),
    of<KsIndexedFaceSet>(),
    of<KsIndexedLineSet>(),
    of<KsText3>(),

    of<KsBaseKit>(),
    of<KsInteractionKit>(),
    of<KsDragger>(),
};

} // namespace

void KsNode::initClasses()
{
    for (const NodeClass& each : s_classes) each.init();
}

void KsNode::exitClasses()
{
    for (auto each = std::rbegin(s_classes); each != std::rend(s_classes); ++each) each->exit();
}
