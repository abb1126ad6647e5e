#include "net/door/door.h"

#include <system_error>

namespace zet::inner
{

std::string Door::Fault::getText() const
{
    return std::system_category().message(m_Code);
}

} // namespace zet::inner
