// The types by which the servers of the platform register.
#pragma once

namespace arena
{

enum class ServerType : unsigned char
{
    Registry = 0,
    Platform = 1,
    Zone = 2,
    Game = 3,
    Sport = 4,
    Lesson = 5,
    Device = 6
};

} // namespace arena
