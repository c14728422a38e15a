#pragma once

#if defined(FORMWEAVE_STATIC)
#define FORMWEAVE_API
#else
#define FORMWEAVE_API __attribute__((visibility("default")))
#endif
