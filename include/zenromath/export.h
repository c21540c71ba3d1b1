// The export macro of the shared library.
#pragma once

#if defined(_WIN32)
#if defined(ZM_BUILDING)
#define ZM_API __declspec(dllexport)
#else
#define ZM_API __declspec(dllimport)
#endif
#else
#define ZM_API __attribute__((visibility("default")))
#endif
