// A counted pointer to a value that is no counted object itself.
#pragma once

#include <memory>

namespace zet
{

template <class T>
using SharedPtr = std::shared_ptr<T>;

} // namespace zet
