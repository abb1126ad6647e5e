#include "tools/frame_reader.h"

#include "framework/memory_stream.h"
#include "tools/object_json.h"
#include "tools/reading.h"

#include <cstdio>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

std::string idText(unsigned short id)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%04x", id);
    return text;
}

// Decodes a buffer field that holds one whole frame with a known id; null if there is none.
ordered_json innerFrame(const wire::Schema& schema, const ordered_json& fields)
{
    for (const wire::Field& field : schema.fields)
    {
        if (field.kind != wire::Kind::kBuffer || !fields.contains(field.name))
            continue;
        std::string bytes;
        CCmdPackager frame;
        if (bytesOfHex(fields[field.name].get<std::string>(), bytes) && streamFrameSize(bytes) == bytes.size() &&
            receiveFrame(frame, bytes))
            return describeCommand(frame, false);
    }
    return nullptr;
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
    const auto store = zet::MemoryStream::createInstance();
    store->write(frame.data(), static_cast<int>(frame.size()));
    zet::InputStream stream(store.get());
    return packager.Receive(stream);
}

ordered_json describeCommand(const CCmdPackager& frame, bool openInner)
{
    ordered_json json = {{"id", idText(frame.GetCmdID())}};
    if (!frame.GetFromAddress().isNull())
        json["from"] = hexOf(&frame.GetFromAddress(), sizeof(zet::Uuid));
    if (!frame.GetTargetAddress().isNull())
        json["target"] = hexOf(&frame.GetTargetAddress(), sizeof(zet::Uuid));
    json["size"] = frame.GetDataSize();

    const std::string_view payload(reinterpret_cast<const char*>(frame.GetBuffer()),
                                   static_cast<size_t>(frame.GetDataSize()));
    const auto classes = classesOfId(frame.GetCmdID());
    const ClassInfo* shown = nullptr;
    Reading reading;
    for (const ClassInfo* info : classes)
    {
        Reading next = readBytes(*info, Form::kCmd, payload);
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
        json["error"] = "unknown id";
        json["payload"] = hexOf(payload.data(), payload.size());
        return json;
    }
    json["class"] = shown->m_Name;
    if (!reading.m_Read || reading.m_Consumed != reading.m_Size)
        json["error"] = !reading.m_Read
                            ? "refused by Read"
                            : std::to_string(reading.m_Size - reading.m_Consumed) + " bytes after the last field";
    json["fields"] = objectJson(shown->m_Wire(), reading.m_Object.get());
    if (openInner)
        if (ordered_json inner = innerFrame(shown->m_Wire(), json["fields"]); !inner.is_null())
            json["inner"] = std::move(inner);
    return json;
}

} // namespace tools
