// Checks a row of commands.def against its class at compile time.
#pragma once

#include "dispatch/command_process.h"

#include <type_traits>

// The class exists, derives from the base of the row, and has its pair.
#define COMMAND_ROW_HOLDS(Class, Base)                                                                                 \
    static_assert(std::is_base_of_v<Base, Class> && !std::is_same_v<Base, Class>,                                      \
                  "the row of " #Class " says that it derives from " #Base);                                           \
    static_assert(std::is_same_v<decltype(&Class::Class##_Process), CmdProcess> &&                                     \
                      std::is_same_v<decltype(&Class::Class##_ProcessSocket), SocketCmdProcess>,                       \
                  "the row of " #Class " names a class without its pair of functions for the analysers");
