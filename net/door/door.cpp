#include "net/door/door.h"

#include "framework/log.h"

#include <system_error>

namespace zet::inner
{

std::string Door::Fault::getText() const
{
    return std::system_category().message(m_Code);
}

DoorHandle openPort(const std::shared_ptr<Door>& door, Door::Kind kind, const Endpoint& own, Door::Fault& fault,
                    bool isShared)
{
    const bool isBoth = own.isAny() && !own.isV4();
    DoorHandle made(door, door->open(kind, isBoth ? Door::kBoth : Door::familyOf(own), fault));
    if (!fault)
    {
        if (kind == Door::kStream)
            door->setOption(made.get(), Door::kRebind, 1);
        if (isShared)
            door->setOption(made.get(), Door::kSharedPort, 1);
        fault = door->bind(made.get(), own);
    }
    if (fault)
        made.close();
    if (fault.m_Reason == Door::Fault::kNoAddress && isBoth)
        return openPort(door, kind, Endpoint::ofV4(0, own.m_Port), fault, isShared);
    return made;
}

bool canSharePort(const Door& door, unsigned short port)
{
    if (door.canSharePorts())
        return true;
    Log::warning(L"Port %d cannot be shared: this system does not divide connections among servers", port);
    return false;
}

} // namespace zet::inner
