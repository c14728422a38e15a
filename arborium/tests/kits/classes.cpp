#include "Pad.h"

KS_NODE_SOURCE(KsPad, KsNode)
KS_KIT_SOURCE(KsPanel, KsDragger)
