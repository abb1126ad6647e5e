// Reserves space in a list in advance, for steps that must not fail later.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zet::inner
{

// Reserves space for the given number of elements in all; doubles the capacity if it is too small. Until then adding
// elements allocates nothing.
template <class T>
void makeRoom(std::vector<T>& list, size_t size)
{
    if (list.capacity() < size)
        list.reserve(std::max(size, 2 * list.capacity()));
}

} // namespace zet::inner
