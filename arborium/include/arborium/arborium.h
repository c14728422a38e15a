#pragma once

// The whole layer: one header per class, by family.

#include <arborium/base/KbBox2f.h>
#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbColor.h>
#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KbLine.h>
#include <arborium/base/KbLineProjector.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbName.h>
#include <arborium/base/KbNumber.h>
#include <arborium/base/KbPList.h>
#include <arborium/base/KbPlane.h>
#include <arborium/base/KbPlaneProjector.h>
#include <arborium/base/KbProjector.h>
#include <arborium/base/KbRotation.h>
#include <arborium/base/KbString.h>
#include <arborium/base/KbStringList.h>
#include <arborium/base/KbThread.h>
#include <arborium/base/KbVec.h>
#include <arborium/base/KbViewVolume.h>
#include <arborium/base/KbViewportRegion.h>
#include <arborium/base/KcInitModuleCmd.h>
#include <arborium/base/KsApi.h>
#include <arborium/base/KsBase.h>
#include <arborium/base/KsDBImpl.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/base/KsModule.h>
#include <arborium/base/KsPreferences.h>
#include <arborium/base/KsRefCounter.h>
#include <arborium/base/KsType.h>
#include <arborium/base/KsTypedObject.h>
#include <arborium/base/KsVersion.h>

#include <arborium/fields/KsClassRecord.h>
#include <arborium/fields/KsField.h>
#include <arborium/fields/KsFieldContainer.h>
#include <arborium/fields/KsFieldData.h>
#include <arborium/fields/KsMField.h>
#include <arborium/fields/KsSField.h>

#include <arborium/sensors/KsSensor.h>
#include <arborium/sensors/KsSensorManager.h>

#include <arborium/nodes/KsBaseColor.h>
#include <arborium/nodes/KsCamera.h>
#include <arborium/nodes/KsChangeStamp.h>
#include <arborium/nodes/KsChildList.h>
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
#include <arborium/nodes/KsNode.h>
#include <arborium/nodes/KsNodeList.h>
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

#include <arborium/kits/KsBaseKit.h>
#include <arborium/kits/KsDragger.h>
#include <arborium/kits/KsGetView.h>
#include <arborium/kits/KsInteractionKit.h>
#include <arborium/kits/KsNodekitCatalog.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsActions.h>
#include <arborium/actions/KsCallbackAction.h>
#include <arborium/actions/KsDetail.h>
#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/actions/KsWriteAction.h>

#include <arborium/events/KsEvent.h>

#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>

#include <arborium/render/KsDrawList.h>
#include <arborium/render/KsGL.h>
#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsMesh.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <arborium/qt/KsQt.h>
#include <arborium/qt/KsQtBasicSlider.h>
#include <arborium/qt/KsQtComponent.h>
#include <arborium/qt/KsQtGLWidget.h>
#include <arborium/qt/KsQtViewer.h>
