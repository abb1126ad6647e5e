#include "tools/frame_reader.h"

#include "framework/memory_stream.h"
#include "framework/packet.h"
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

ordered_json failure(size_t offset, const std::string& what)
{
    return {{"offset", offset}, {"error", what}};
}

// Bytes that a stream frame takes, or 0 where its head is not whole yet.
size_t streamFrameSize(std::string_view bytes)
{
    if (bytes.size() < static_cast<size_t>(CCmdPackager::kMinHeaderSize))
        return 0;
    return static_cast<size_t>(CCmdPackager::GetFrameSize(reinterpret_cast<const unsigned char*>(bytes.data())));
}

bool receive(CCmdPackager& frame, std::string_view bytes)
{
    const auto store = zet::MemoryStream::createInstance();
    store->write(bytes.data(), static_cast<int>(bytes.size()));
    zet::InputStream stream(store.get());
    return frame.Receive(stream);
}

// One stream frame from the front of the bytes; false ends the input.
bool tellStreamFrame(std::string_view bytes, size_t offset, size_t size,
                     const std::function<void(const ordered_json&)>& tell)
{
    CCmdPackager frame;
    if (size == 0 || size > bytes.size() || !receive(frame, bytes.substr(0, size)))
    {
        tell(failure(offset, size > bytes.size()
                                 ? "frame of " + std::to_string(size) + " bytes, had " + std::to_string(bytes.size())
                                 : "no whole frame head"));
        return false;
    }
    ordered_json json = {{"offset", offset}};
    json.update(describeCommand(frame, true));
    tell(json);
    return true;
}

int decodeStream(std::string_view bytes, const std::function<void(const ordered_json&)>& tell)
{
    int frames = 0;
    for (size_t at = 0; at < bytes.size(); ++frames)
    {
        const size_t size = streamFrameSize(bytes.substr(at));
        if (!tellStreamFrame(bytes.substr(at), at, size, tell))
            break;
        at += size;
    }
    return frames;
}

int decodePackets(std::string_view bytes, const std::function<void(const ordered_json&)>& tell)
{
    constexpr size_t kLength = zet::PacketWriter::kHeadSize;
    int frames = 0;
    for (size_t at = 0; at < bytes.size(); ++frames)
    {
        if (bytes.size() - at < kLength)
        {
            tell(failure(at, "no whole packet length"));
            break;
        }
        size_t length = 0;
        for (size_t i = 0; i < kLength; ++i)
            length |= static_cast<size_t>(static_cast<unsigned char>(bytes[at + i])) << 8 * i;
        at += kLength;
        if (length > bytes.size() - at)
        {
            tell(failure(at,
                         "packet of " + std::to_string(length) + " bytes, had " + std::to_string(bytes.size() - at)));
            break;
        }
        if (!tellStreamFrame(bytes.substr(at, length), at, streamFrameSize(bytes.substr(at, length)), tell))
            break;
        at += length;
    }
    return frames;
}

int decodeDatagram(std::string_view bytes, const std::function<void(const ordered_json&)>& tell)
{
    CCmdPackager frame;
    if (frame.Unpack(bytes.data(), static_cast<int>(bytes.size())) <= 0)
    {
        tell(failure(0, "no whole datagram frame"));
        return 0;
    }
    tell(describeCommand(frame, true));
    return 1;
}

// A buffer field that holds one whole frame with a known id, opened; null where there is none.
ordered_json innerFrame(const wire::Schema& schema, const ordered_json& fields)
{
    for (const wire::Field& field : schema.fields)
    {
        if (field.kind != wire::Kind::kBuffer || !fields.contains(field.name))
            continue;
        std::string bytes;
        CCmdPackager frame;
        if (bytesOfHex(fields[field.name].get<std::string>(), bytes) && streamFrameSize(bytes) == bytes.size() &&
            receive(frame, bytes))
            return describeCommand(frame, false);
    }
    return nullptr;
}

} // namespace

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
                            : std::to_string(reading.m_Size - reading.m_Consumed) + " bytes behind the last field";
    json["fields"] = objectJson(shown->m_Wire(), reading.m_Object.get());
    if (openInner)
        if (ordered_json inner = innerFrame(shown->m_Wire(), json["fields"]); !inner.is_null())
            json["inner"] = std::move(inner);
    return json;
}

int decodeFrames(std::string_view bytes, Framing framing, const std::function<void(const ordered_json&)>& tell)
{
    switch (framing)
    {
    case Framing::kPackets:
        return decodePackets(bytes, tell);
    case Framing::kDatagram:
        return decodeDatagram(bytes, tell);
    case Framing::kStream:
        break;
    }
    return decodeStream(bytes, tell);
}

std::string recordedBytes(const std::string& content)
{
    std::string bytes;
    return bytesOfHex(content, bytes) ? bytes : content;
}

} // namespace tools
