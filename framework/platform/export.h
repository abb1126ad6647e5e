// Marks what the shared library exports; everything else stays hidden.
#pragma once

#if defined(COMMONGROUND_STATIC)
#define COMMONGROUND_API
#elif defined(_WIN32)
#if defined(COMMONGROUND_BUILDING)
#define COMMONGROUND_API __declspec(dllexport)
#else
#define COMMONGROUND_API __declspec(dllimport)
#endif
#else
#define COMMONGROUND_API __attribute__((visibility("default")))
#endif

// Stands before the entry point of a loadable module, which exports it and imports the rest from the library.
#if defined(_WIN32)
#define ZET_MODULE_EXPORT __declspec(dllexport)
#else
#define ZET_MODULE_EXPORT __attribute__((visibility("default")))
#endif
