#pragma once

/// All of Formweave. Start with `KsFormweave` and `KsTopLevelDialog`.
#include <formweave/KsAuditor.h>
#include <formweave/KsColumnDialog.h>
#include <formweave/KsDialogAuditor.h>
#include <formweave/KsDialogCheckBox.h>
#include <formweave/KsDialogCheckBoxAuditor.h>
#include <formweave/KsDialogCheckBoxLauncher.h>
#include <formweave/KsDialogChoiceAuditor.h>
#include <formweave/KsDialogComponent.h>
#include <formweave/KsDialogEditTextAuditor.h>
#include <formweave/KsDialogGroup.h>
#include <formweave/KsDialogIntegerSliderAuditor.h>
#include <formweave/KsDialogPushButton.h>
#include <formweave/KsDialogPushButtonAuditor.h>
#include <formweave/KsDialogPushButtonLauncher.h>
#include <formweave/KsDialogRealSliderAuditor.h>
#include <formweave/KsDialogWidgetList.h>
#include <formweave/KsFormweave.h>
#include <formweave/KsMenuCheckBoxAuditor.h>
#include <formweave/KsMenuFileSelectionAuditor.h>
#include <formweave/KsMenuPushButtonAuditor.h>
#include <formweave/KsMenuRadioButtonsAuditor.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTabDialogAuditor.h>
#include <formweave/KsTopComponent.h>
#include <formweave/KsTopLevelDialog.h>
