#include "tools/capture/session_message.h"

#include "framework/uuid.h"

#include <algorithm>
#include <string>

namespace tools
{

void addSessionMessage(JsonText& out, const NetPacketView& message)
{
    constexpr size_t kUuid = sizeof(zet::Uuid);
    out.put("\"session\":{\"message\":");
    out.addText(message.m_ClassName);
    if (message.m_From)
    {
        out.put(",\"from\":");
        out.addHex(message.m_From, kUuid);
    }
    if (!message.m_Targets.empty())
    {
        out.put(",\"targets\":[");
        for (size_t at = 0; at < message.m_Targets.size(); at += kUuid)
        {
            if (at > 0)
                out.put(',');
            out.addHex(message.m_Targets.data() + at, kUuid);
        }
        out.put(']');
    }
    out.put("},");
}

void addSessionMessage(JsonText& out, std::string_view className, uint64_t size)
{
    out.put("\"session\":{\"message\":");
    // A peer may send any bytes as a name.
    std::string name(className);
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    out.addText(name);
    out.put("},\"size\":");
    out.addInteger(static_cast<long long>(size));
}

} // namespace tools
