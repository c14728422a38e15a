#pragma once

/// Marks what the library exports. Define `ARBORIUM_BUILD` while the library itself is compiled and
/// `ARBORIUM_STATIC` for a static one.
#if defined(ARBORIUM_STATIC)
#define ARBORIUM_API
#elif defined(_WIN32)
#if defined(ARBORIUM_BUILD)
#define ARBORIUM_API __declspec(dllexport)
#else
#define ARBORIUM_API __declspec(dllimport)
#endif
#else
#define ARBORIUM_API __attribute__((visibility("default")))
#endif

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

using KbBool = bool;
