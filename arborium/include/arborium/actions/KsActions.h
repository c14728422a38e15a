#pragma once

/// All actions.
#include <arborium/actions/KsCallbackAction.h>
#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsWriteAction.h>
