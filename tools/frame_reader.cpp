#include "tools/frame_reader.h"

#include "tools/object_text.h"
#include "tools/reading.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

namespace tools
{

namespace
{

std::string idText(unsigned short id)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%04x", id);
    return text;
}

void addUuid(JsonText& out, std::string_view key, const zet::Uuid& uuid)
{
    if (uuid.isNull())
        return;
    out.put(key);
    out.addHex(&uuid, sizeof uuid);
}

// Shows a buffer field that holds one whole frame with a known id, if there is one.
void addInner(JsonText& out, const wire::Schema& schema, const void* object)
{
    for (const wire::Field& field : schema.fields)
    {
        if (field.kind != wire::Kind::kBuffer || field.name.empty())
            continue;
        const auto [data, size] = field.bytes(static_cast<const unsigned char*>(object) + field.offset);
        const std::string_view bytes(reinterpret_cast<const char*>(data), static_cast<size_t>(size));
        CCmdPackager frame;
        if (streamFrameSize(bytes) != bytes.size() || !receiveFrame(frame, bytes))
            continue;
        out.put(",\"inner\":{");
        addCommand(out, frame, false);
        return out.put('}');
    }
}

} // namespace

uint64_t streamFrameSize(std::string_view bytes)
{
    if (bytes.size() < static_cast<size_t>(CCmdPackager::kMinHeaderSize))
        return 0;
    return static_cast<uint64_t>(CCmdPackager::GetFrameSize(reinterpret_cast<const unsigned char*>(bytes.data())));
}

bool receiveFrame(CCmdPackager& packager, std::string_view frame)
{
    return packager.Receive(frame.data(), static_cast<int>(frame.size()));
}

bool isKnownId(std::string_view frame)
{
    const auto low = static_cast<unsigned char>(frame[0]);
    const auto high = static_cast<unsigned char>(frame[1]);
    return !classesOfId(static_cast<unsigned short>(high << 8 | low)).empty();
}

bool isReadExactly(const CCmdPackager& frame)
{
    const std::string_view payload(reinterpret_cast<const char*>(frame.GetBuffer()),
                                   static_cast<size_t>(frame.GetDataSize()));
    const auto& classes = classesOfId(frame.GetCmdID());
    return std::any_of(classes.begin(), classes.end(),
                       [&](const ClassInfo* info)
                       {
                           const Reading reading = readOnly(*info, Form::kCmd, payload);
                           return reading.m_Read && reading.m_Consumed == reading.m_Size;
                       });
}

bool addCommand(JsonText& out, const CCmdPackager& frame, bool openInner)
{
    out.put("\"id\":");
    out.addText(idText(frame.GetCmdID()));
    addUuid(out, ",\"from\":", frame.GetFromAddress());
    addUuid(out, ",\"target\":", frame.GetTargetAddress());
    out.put(",\"size\":");
    out.addInteger(frame.GetDataSize());

    const std::string_view payload(reinterpret_cast<const char*>(frame.GetBuffer()),
                                   static_cast<size_t>(frame.GetDataSize()));
    const ClassInfo* shown = nullptr;
    Reading reading;
    for (const ClassInfo* info : classesOfId(frame.GetCmdID()))
    {
        Reading next = readOnly(*info, Form::kCmd, payload);
        const bool fits = next.m_Read && next.m_Consumed == next.m_Size;
        if (!shown || fits)
        {
            shown = info;
            reading = std::move(next);
        }
        if (fits)
            break;
    }
    if (!shown)
    {
        out.put(",\"error\":\"unknown id\",\"payload\":");
        out.addHex(payload.data(), payload.size());
        return false;
    }
    out.put(",\"class\":");
    out.addText(shown->m_Name);
    const bool isWhole = reading.m_Read && reading.m_Consumed == reading.m_Size;
    if (!isWhole)
    {
        out.put(",\"error\":");
        out.addText(!reading.m_Read
                        ? "refused by Read"
                        : std::to_string(reading.m_Size - reading.m_Consumed) + " bytes after the last field");
    }
    out.put(",\"fields\":");
    addObject(out, shown->m_Wire(), reading.m_Object.get());
    if (openInner)
        addInner(out, shown->m_Wire(), reading.m_Object.get());
    return isWhole;
}

} // namespace tools
