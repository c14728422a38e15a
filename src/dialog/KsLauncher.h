#pragma once

class KsFormweave;
class KsTopLevelDialog;

/// Builds the window of a dialog that `launcher` is about to open, unless it has one, and makes the
/// launcher the dialog's parent.
void ksBuildLaunched(KsFormweave* launcher, KsTopLevelDialog* dialog);
