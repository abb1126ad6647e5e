// Marks what the shared library exports; everything else stays hidden.
#pragma once

// The library queries the class of a host's messages, events, commands and sockets. Exceptions may be off.
#if !defined(__GXX_RTTI) && !defined(_CPPRTTI)
#error "commonground asks the host's objects for their class: compile with run-time type information (-frtti)"
#endif

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

// Marks the entry point of a loadable module, which exports it and imports the rest from the library.
#if defined(_WIN32)
#define ZET_MODULE_EXPORT __declspec(dllexport)
#else
#define ZET_MODULE_EXPORT __attribute__((visibility("default")))
#endif

// Around classes whose published form has virtual functions and a base but no virtual destructor, which would be one
// more entry in their tables. They are never destroyed through the base, so the warning would be wrong.
#if defined(__GNUC__)
#define COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_BEGIN                                                                       \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wnon-virtual-dtor\"")
#define COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_END _Pragma("GCC diagnostic pop")
#else
#define COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_BEGIN
#define COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_END
#endif
