#include <arborium/kits/KsBaseKit.h>
#include <arborium/kits/KsDragger.h>
#include <arborium/kits/KsInteractionKit.h>
#include <arborium/nodes/KsBaseColor.h>
#include <arborium/nodes/KsCamera.h>
#include <arborium/nodes/KsClipPlane.h>
#if __has_include(<arborium/nodes/KsCone.h>)
#include <arborium/nodes/KsCone.h>
#define KS_HAS_CONE
#endif
#if __has_include(<arborium/nodes/KsCoordinate3.h>)
#include <arborium/nodes/KsCoordinate3.h>
#define KS_HAS_COORDINATE3
#endif
#if __has_include(<arborium/nodes/KsCube.h>)
#include <arborium/nodes/KsCube.h>
#define KS_HAS_CUBE
#endif
#if __has_include(<arborium/nodes/KsCylinder.h>)
#include <arborium/nodes/KsCylinder.h>
#define KS_HAS_CYLINDER
#endif
#include <arborium/nodes/KsDirectionalLight.h>
#include <arborium/nodes/KsEventCallback.h>
#if __has_include(<arborium/nodes/KsFaceSet.h>)
#include <arborium/nodes/KsFaceSet.h>
#define KS_HAS_FACESET
#endif
#if __has_include(<arborium/nodes/KsFile.h>)
#include <arborium/nodes/KsFile.h>
#define KS_HAS_FILE
#endif
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsGroup.h>
#if __has_include(<arborium/nodes/KsIndexedFaceSet.h>)
#include <arborium/nodes/KsIndexedFaceSet.h>
#define KS_HAS_INDEXEDFACESET
#endif
#if __has_include(<arborium/nodes/KsIndexedLineSet.h>)
#include <arborium/nodes/KsIndexedLineSet.h>
#define KS_HAS_INDEXEDLINESET
#endif
#include <arborium/nodes/KsLight.h>
#include <arborium/nodes/KsLightModel.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsMatrixTransform.h>
#if __has_include(<arborium/nodes/KsNormal.h>)
#include <arborium/nodes/KsNormal.h>
#define KS_HAS_NORMAL
#endif
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsPointLight.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#if __has_include(<arborium/nodes/KsShape.h>)
#include <arborium/nodes/KsShape.h>
#define KS_HAS_SHAPE
#endif
#include <arborium/nodes/KsShapeHints.h>
#if __has_include(<arborium/nodes/KsSphere.h>)
#include <arborium/nodes/KsSphere.h>
#define KS_HAS_SPHERE
#endif
#include <arborium/nodes/KsSwitch.h>
#if __has_include(<arborium/nodes/KsText3.h>)
#include <arborium/nodes/KsText3.h>
#define KS_HAS_TEXT3
#endif
#if __has_include(<arborium/nodes/KsTexture2.h>)
#include <arborium/nodes/KsTexture2.h>
#define KS_HAS_TEXTURE2
#endif
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTransformation.h>
#include <arborium/nodes/KsTranslation.h>
#if __has_include(<arborium/nodes/KsVertexProperty.h>)
#include <arborium/nodes/KsVertexProperty.h>
#define KS_HAS_VERTEXPROPERTY
#endif

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

    of<KsGroup>(), of<KsSeparator>(), of<KsSwitch>(), 
#ifdef KS_HAS_FILE
    of<KsFile>(),
#endif


    of<KsTransformation>(), of<KsTranslation>(), of<KsRotation>(), of<KsScale>(),
    of<KsTransform>(), of<KsMatrixTransform>(),

    of<KsMaterial>(), of<KsBaseColor>(), of<KsLightModel>(), 
#ifdef KS_HAS_TEXTURE2
    of<KsTexture2>(),
#endif
 of<KsFont>(),
    of<KsShapeHints>(), of<KsPickStyle>(), of<KsClipPlane>(),

    of<KsLight>(), of<KsDirectionalLight>(), of<KsPointLight>(),
    of<KsCamera>(), of<KsOrthographicCamera>(), of<KsPerspectiveCamera>(),
    of<KsEventCallback>(),

    
#ifdef KS_HAS_COORDINATE3
    of<KsCoordinate3>(),
#endif
 
#ifdef KS_HAS_NORMAL
    of<KsNormal>(),
#endif
 
#ifdef KS_HAS_VERTEXPROPERTY
    of<KsVertexProperty>(),
#endif

    
#ifdef KS_HAS_SHAPE
    of<KsShape>(),
#endif
 
#ifdef KS_HAS_CUBE
    of<KsCube>(),
#endif
 
#ifdef KS_HAS_SPHERE
    of<KsSphere>(),
#endif
 
#ifdef KS_HAS_CONE
    of<KsCone>(),
#endif
 
#ifdef KS_HAS_CYLINDER
    of<KsCylinder>(),
#endif

    
#ifdef KS_HAS_FACESET
    of<KsFaceSet>(),
#endif
 
#ifdef KS_HAS_INDEXEDFACESET
    of<KsIndexedFaceSet>(),
#endif
 
#ifdef KS_HAS_INDEXEDLINESET
    of<KsIndexedLineSet>(),
#endif
 
#ifdef KS_HAS_TEXT3
    of<KsText3>(),
#endif


    of<KsBaseKit>(), of<KsInteractionKit>(), of<KsDragger>(),
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
