// Objects as arguments of handlers. An argument has 32 bits where a pointer may have more, so it is a number.
#pragma once

#include <cstddef>
#include <vector>

namespace test
{

inline std::vector<void*>& argumentObjects()
{
    static std::vector<void*> objects;
    return objects;
}

// The number of an object; objects are identified by their address.
inline unsigned long argumentOf(void* object)
{
    std::vector<void*>& objects = argumentObjects();
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (objects[i] == object)
            return static_cast<unsigned long>(i + 1);
    objects.push_back(object);
    return static_cast<unsigned long>(objects.size());
}

template <class T>
T& objectOf(unsigned long argument)
{
    return *static_cast<T*>(argumentObjects().at(argument - 1));
}

} // namespace test
