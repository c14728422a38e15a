#pragma once

/// The version of the layer, as `KsModule` records and `--version` show it.
#define ARBORIUM_VERSION "1.0.0.0"
