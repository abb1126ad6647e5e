// Room in a list beforehand, for what must not fail later.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zet::inner
{

// Room for so many in all, twice as much as before where there is too little: until then the list takes no memory.
template <class T>
void makeRoom(std::vector<T>& list, size_t size)
{
    if (list.capacity() < size)
        list.reserve(std::max(size, 2 * list.capacity()));
}

} // namespace zet::inner
