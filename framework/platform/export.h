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
