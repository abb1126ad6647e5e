// Marks what the shared library exports; everything else stays hidden.
#pragma once

// Messages, events, commands and sockets of a host are asked for their class by the library. Exceptions may be off.
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

// Stands before the entry point of a loadable module, which exports it and imports the rest from the library.
#if defined(_WIN32)
#define ZET_MODULE_EXPORT __declspec(dllexport)
#else
#define ZET_MODULE_EXPORT __attribute__((visibility("default")))
#endif

// Around classes that are made as they are published: with virtual operations, a base, and no virtual destructor, which
// would be one more entry of their tables. They are destroyed as what they are, never through the base, so there is
// nothing to warn a host of.
#if defined(__GNUC__)
#define COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_BEGIN                                                                       \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wnon-virtual-dtor\"")
#define COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_END _Pragma("GCC diagnostic pop")
#else
#define COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_BEGIN
#define COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_END
#endif
