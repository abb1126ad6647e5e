#include "tools/frame_reader.h"

#include "tools/object_json.h"
#include "tools/object_text.h"
#include "tools/read_failure.h"
#include "tools/reading.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
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

// Says what was missing, and where in the payload.
void addPlace(JsonText& out, const ClassInfo& info, Form form, const Reading& reading, std::string_view payload)
{
    // The packager may have had space for fewer bytes.
    const std::string_view bytes = payload.substr(0, static_cast<size_t>(reading.m_Size));
    const ClassReading asClass =
        readAsClass(info.m_Wire(), bytes, form == Form::kCmd ? Limits::kOfCommands : Limits::kNone);
    const ReadFailure& where = asClass.m_Failure;
    if (reading.m_Read || asClass.m_Read)
    {
        out.put(",\"at\":{\"offset\":");
        out.addInteger(reading.m_Consumed);
        return out.put('}');
    }
    out.put(",\"why\":");
    out.addText(std::string(info.m_Name) + ": " + where.m_What + " at " + where.m_Field + ", offset " +
                std::to_string(where.m_Offset));
    out.put(",\"at\":{\"field\":");
    out.addText(where.m_Field);
    if (where.m_Element >= 0)
    {
        out.put(",\"element\":");
        out.addInteger(where.m_Element);
    }
    out.put(",\"offset\":");
    out.addInteger(static_cast<long long>(where.m_Offset));
    if (where.m_Needed != 0 || where.m_Had != 0)
    {
        out.put(",\"needed\":");
        out.addInteger(where.m_Needed);
        out.put(",\"had\":");
        out.addInteger(static_cast<long long>(where.m_Had));
    }
    out.put('}');
}

// False if the class does not read the bytes exactly; then adds what is wrong.
bool addReadingFault(JsonText& out, const ClassInfo& info, Form form, const Reading& reading, std::string_view payload)
{
    if (reading.m_Read && reading.m_Consumed == reading.m_Size)
        return true;
    out.put(",\"error\":");
    out.addText(!reading.m_Read ? "refused by Read"
                                : std::to_string(reading.m_Size - reading.m_Consumed) + " bytes after the last field");
    addPlace(out, info, form, reading, payload);
    return false;
}

bool addCommandAt(JsonText& out, const CCmdPackager& frame, int levels, const PackTypes* types);

// Shows a buffer field that holds one whole frame with a known id, if there is one.
void addInner(JsonText& out, const wire::Schema& schema, const void* object, int levels, const PackTypes* types)
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
        addCommandAt(out, frame, levels - 1, types);
        return out.put('}');
    }
}

// The class with the id that reads the payload exactly, or else the first one; null for an unknown id.
const ClassInfo* shownClass(unsigned short id, std::string_view payload, Reading& reading)
{
    const ClassInfo* shown = nullptr;
    for (const ClassInfo* info : classesOfId(id))
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
    return shown;
}

const wire::Field* fieldOf(const wire::Schema& schema, std::string_view name)
{
    const auto found = std::find_if(schema.fields.begin(), schema.fields.end(),
                                    [&](const wire::Field& field) { return field.name == name; });
    return found == schema.fields.end() ? nullptr : &*found;
}

// Shows the message in an envelope, if the object is one.
void addPackMessage(JsonText& out, const ClassInfo& info, const void* object, const PackTypes& types)
{
    const auto* const at = static_cast<const unsigned char*>(object);
    const wire::Field* const type = fieldOf(info.m_Wire(), "m_PackType");
    const wire::Field* const data = fieldOf(info.m_Wire(), "m_PackData");
    if (!type || !data || type->kind != wire::Kind::kNumber || data->kind != wire::Kind::kPayload)
        return;
    uint32_t bits = 0;
    std::memcpy(&bits, at + type->offset, std::min<size_t>(static_cast<size_t>(type->size), sizeof bits));
    const auto number = static_cast<int>(numberOf(*type, bits));
    const ClassInfo* const message = types.find(info.m_Name, number);
    out.put(",\"message\":{");
    if (!message)
    {
        out.put("\"error\":\"no message has this number\"}");
        return;
    }
    const auto [bytes, size] = data->bytes(at + data->offset);
    const std::string_view payload(reinterpret_cast<const char*>(bytes), static_cast<size_t>(size));
    const Form form = message->m_ReadCmd ? Form::kCmd : Form::kData;
    const Reading reading = readOnly(*message, form, payload);
    out.put("\"class\":");
    out.addText(message->m_Name);
    addReadingFault(out, *message, form, reading, payload);
    out.put(",\"fields\":");
    addObject(out, message->m_Wire(), reading.m_Object.get());
    out.put('}');
}

} // namespace

uint64_t streamFrameSize(std::string_view bytes)
{
    if (bytes.size() < static_cast<size_t>(CCmdPackager::kMinHeaderSize))
        return 0;
    return static_cast<uint64_t>(CCmdPackager::GetFrameSize(reinterpret_cast<const unsigned char*>(bytes.data())));
}

unsigned short streamId(std::string_view frame)
{
    return static_cast<unsigned short>(static_cast<unsigned char>(frame[0]) | static_cast<unsigned char>(frame[1])
                                                                                  << 8);
}

uint64_t streamPayloadSize(std::string_view frame)
{
    uint32_t word = 0;
    for (size_t i = 0; i < 4; ++i)
        word |= uint32_t{static_cast<unsigned char>(frame[2 + i])} << 8 * i;
    return word >> 2;
}

bool receiveFrame(CCmdPackager& packager, std::string_view frame)
{
    return packager.Receive(frame.data(), static_cast<int>(frame.size()));
}

bool isKnownId(std::string_view frame)
{
    return !classesOfId(streamId(frame)).empty();
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

std::string_view classNameOf(const CCmdPackager& frame)
{
    const std::string_view payload(reinterpret_cast<const char*>(frame.GetBuffer()),
                                   static_cast<size_t>(frame.GetDataSize()));
    Reading reading;
    const ClassInfo* const shown = shownClass(frame.GetCmdID(), payload, reading);
    return shown ? shown->m_Name : "";
}

bool addCommand(JsonText& out, const CCmdPackager& frame, bool openInner, const PackTypes* types)
{
    return addCommandAt(out, frame, !openInner ? 0 : types ? kMostInner : 1, types);
}

namespace
{

// Shows at most that many frames in each other.
bool addCommandAt(JsonText& out, const CCmdPackager& frame, int levels, const PackTypes* types)
{
    out.put("\"id\":");
    out.addText(idText(frame.GetCmdID()));
    addUuid(out, ",\"from\":", frame.GetFromAddress());
    addUuid(out, ",\"target\":", frame.GetTargetAddress());
    out.put(",\"size\":");
    out.addInteger(frame.GetDataSize());

    const std::string_view payload(reinterpret_cast<const char*>(frame.GetBuffer()),
                                   static_cast<size_t>(frame.GetDataSize()));
    Reading reading;
    const ClassInfo* const shown = shownClass(frame.GetCmdID(), payload, reading);
    if (!shown)
    {
        out.put(",\"error\":\"unknown id\",\"payload\":");
        out.addHex(payload.data(), payload.size());
        return false;
    }
    out.put(",\"class\":");
    out.addText(shown->m_Name);
    const bool isWhole = addReadingFault(out, *shown, Form::kCmd, reading, payload);
    out.put(",\"fields\":");
    addObject(out, shown->m_Wire(), reading.m_Object.get());
    if (levels > 0)
        addInner(out, shown->m_Wire(), reading.m_Object.get(), levels, types);
    if (types)
        addPackMessage(out, *shown, reading.m_Object.get(), *types);
    return isWhole;
}

} // namespace

} // namespace tools
