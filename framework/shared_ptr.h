// A reference-counted pointer to a value that is not a counted object.
#pragma once

#include <memory>

namespace zet
{

template <class T>
using SharedPtr = std::shared_ptr<T>;

} // namespace zet
