// One entry of the engine's configuration.
#pragma once

#include "framework/string.h"

namespace Quillo
{

// A name and its value, as texts.
struct FConfigVar
{
    zet::String_T<wchar_t> m_Name;
    zet::String_T<wchar_t> m_Value;
};

} // namespace Quillo
