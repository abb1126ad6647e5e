// The first packet of each side of a net session: the mark of the protocol and its version, and an id. Also for tools
// that find sessions in captures.
#pragma once

#include "framework/uuid.h"

#include <string_view>

namespace zet::inner
{

inline constexpr std::string_view kGreetingMark{"zns\x01", 4};
inline constexpr int kGreetingSize = static_cast<int>(kGreetingMark.size() + sizeof(Uuid));

} // namespace zet::inner
