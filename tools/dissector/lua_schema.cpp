#include "tools/dissector/lua_schema.h"

#include "framework/packet.h"
#include "net/session/inner/greeting.h"
#include "packaging/command_head.h"
#include "tools/class_table.h"
#include "tools/frame_reader.h"
#include "tools/reading.h"
#include "tools/schema_text.h"
#include "transport/inner/net_command_view.h"
#include "transport/udp_client_socket.h"

#include <algorithm>
#include <map>

namespace tools
{

namespace
{

using wire::Decides;
using wire::Field;
using wire::Kind;
using wire::Says;
using wire::Schema;

const char* numberKind(const Field& field)
{
    if (field.isBool)
        return "bool";
    switch (field.size)
    {
    case 1:
        return field.isSigned ? "int8" : "uint8";
    case 2:
        return field.isSigned ? "int16" : "uint16";
    default:
        return field.isSigned ? "int32" : "uint32";
    }
}

const char* kindOf(const Field& field)
{
    switch (field.kind)
    {
    case Kind::kNumber:
        return numberKind(field);
    case Kind::kFloat:
        return "float";
    case Kind::kText:
        return "text";
    case Kind::kRaw:
        return *field.type ? field.type : "bytes";
    case Kind::kBuffer:
        return "buffer";
    case Kind::kPayload:
        return "payload";
    case Kind::kRecord:
        return "record";
    case Kind::kArray:
        return "array";
    case Kind::kPair:
        return "pair";
    case Kind::kList:
        return "list";
    case Kind::kCount:
        return "count";
    case Kind::kTable:
        break;
    }
    return "table";
}

const char* testsOf(const Field& field)
{
    switch (field.how.reading)
    {
    case Decides::kAll:
        return "";
    case Decides::kCount:
        return "count";
    case Decides::kNothing:
        return "nothing";
    case Decides::kLastElement:
        return "last";
    case Decides::kAboveZero:
        break;
    }
    return "above zero";
}

std::string quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

// Appends members of a table in Lua, each after a comma.
class Members
{
public:
    explicit Members(std::string& out) : m_Out(out) {}
    void add(const char* name, const std::string& value)
    {
        m_Out.append(", ").append(name).append(" = ").append(value);
    }
    void add(const char* name, int value) { add(name, std::to_string(value)); }
    void addQuoted(const char* name, const std::string& value)
    {
        if (!value.empty())
            add(name, quoted(value));
    }

private:
    std::string& m_Out;
};

std::string nameAt(const Schema& schema, size_t offset)
{
    const auto place =
        std::find_if(schema.fields.begin(), schema.fields.end(),
                     [&](const Field& field) { return field.offset == offset && field.kind == Kind::kNumber; });
    return place == schema.fields.end() ? "" : place->name;
}

// Whether the messages of an envelope have the form of the data packager only: then one of those holds its payload.
bool carriesRecords(const std::string& envelope)
{
    return std::ranges::any_of(classTable(),
                               [&](const ClassInfo& info)
                               {
                                   return info.m_Family == Family::kMessage && !hasForm(info, Form::kCmd) &&
                                          (envelope == info.m_Base || envelope == info.m_OtherEnvelope);
                               });
}

class LuaSchema
{
public:
    std::string text();

private:
    std::string fieldText(const Schema& schema, const Field& field);
    void addBounds(Members& members, const Schema& schema, const Field& field);
    void addParts(Members& members, const Schema& schema, const Field& field);
    void addTable(Members& members, const Schema& schema, const Field& field);
    void addClass(const Schema& schema, const std::string& attributes);
    // Records that no table of classes lists, such as those that one class alone has.
    void addInnerRecords(const Field& field);

    std::string m_Out;
    std::map<std::string, bool> m_Added;
};

void LuaSchema::addTable(Members& members, const Schema& schema, const Field& field)
{
    static constexpr const char* rows[] = {"own", "said", "counted"};
    members.addQuoted("rows", rows[static_cast<size_t>(field.says)]);
    if (field.says == Says::kCount)
        members.add("said", field.rows.rows);
    if (field.rows.across != 0)
        members.add("across", field.rows.across);
    std::string columns;
    for (const Field& column : field.parts)
        columns += (columns.empty() ? "" : ", ") + fieldText(schema, column);
    members.add("of", "{" + columns + "}");
}

void LuaSchema::addParts(Members& members, const Schema& schema, const Field& field)
{
    switch (field.kind)
    {
    case Kind::kRecord:
        addInnerRecords(field);
        return members.addQuoted("of", field.record->name);
    case Kind::kArray:
        return members.add("of", fieldText(schema, field.parts[0]));
    case Kind::kPair:
        return members.add("of",
                           "{" + fieldText(schema, field.parts[0]) + ", " + fieldText(schema, field.parts[1]) + "}");
    case Kind::kList:
        if (field.parts.size() == 2 && field.how.key == wire::Key::kTravels)
            members.add("key", fieldText(schema, field.parts[0]));
        return members.add("of", fieldText(schema, field.parts.back()));
    case Kind::kTable:
        return addTable(members, schema, field);
    default:
        return;
    }
}

void LuaSchema::addBounds(Members& members, const Schema& schema, const Field& field)
{
    if (field.kind == Kind::kArray || (field.kind == Kind::kRaw && !*field.type))
        members.add("size", field.extent);
    if (field.says == Says::kMember)
        members.addQuoted("by", nameAt(schema, field.sizeOffset));
    if (field.kind == Kind::kPayload && carriesRecords(schema.name))
        members.add("most", CDataPackager().GetBufferSize());
}

std::string LuaSchema::fieldText(const Schema& schema, const Field& field)
{
    const char* const kind = kindOf(field);
    std::string out = "{" + quoted(field.name) + ", " + quoted(kind);
    Members members(out);
    addParts(members, schema, field);
    addBounds(members, schema, field);
    if (field.kind == Kind::kList && field.says == Says::kCountBefore)
        members.add("apart", "true");
    if (field.how.into == wire::Into::kSlots)
        members.addQuoted("into", "existing");
    if (field.kind != Kind::kTable)
        members.addQuoted("tests", testsOf(field));
    if (!field.words.empty())
        members.addQuoted("word", field.words.front());
    return out + "}";
}

void LuaSchema::addInnerRecords(const Field& field)
{
    if (!findClass(field.record->name) && !m_Added[field.record->name])
        addClass(*field.record, "");
}

void LuaSchema::addClass(const Schema& schema, const std::string& attributes)
{
    m_Added[schema.name] = true;
    std::string fields;
    // The fields of a head are one line: their order and rules are those of all commands.
    for (size_t i = 0; i < schema.fields.size(); ++i)
    {
        const Field& field = schema.fields[i];
        if (!field.head)
        {
            fields += "    " + fieldText(schema, field) + ",\n";
            continue;
        }
        const size_t begin = i;
        while (i + 1 < schema.fields.size() && schema.fields[i + 1].head)
            ++i;
        std::string line = "    {\"\", \"head\"";
        Members members(line);
        members.add("size", static_cast<int>(i + 1 - begin));
        if (!field.words.empty())
            members.addQuoted("word", field.words.front());
        fields += line + "},\n";
    }
    m_Out += "class(" + quoted(schema.name) + ", {smallest = " + std::to_string(schema.smallest) + attributes +
             (fields.empty() ? "}, {})\n" : "}, {\n" + fields + "})\n");
}

std::string LuaSchema::text()
{
    for (const ClassInfo& info : classTable())
    {
        std::string attributes;
        Members members(attributes);
        if (info.m_Family == Family::kCommand)
            members.add("id", idText(info));
        if (hasForm(info, Form::kCmd))
            members.add("cmd", "true");
        addClass(info.m_Wire(), attributes);
    }
    return std::move(m_Out);
}

} // namespace

namespace
{

// The numbers and texts of the protocol that the dissector's own files use.
std::string luaConstants()
{
    std::string out = "-- Sizes, limits and marks.\n";
    const auto add = [&](const char* name, const std::string& value)
    { out.append("local ").append(name).append(" = ").append(value).append("\n"); };
    add("MOST_TEXT_UNITS", std::to_string(CCmdPackager::kMaxTextUnits));
    add("MOST_BUFFER", std::to_string(CCmdPackager::kMaxBufferSize));
    add("TRUSTED_COUNT", std::to_string(wire::kTrustedCount));
    add("HEAD_VERSION", std::to_string(CCmdHead::kVersion));
    add("STREAM_HEAD", std::to_string(CCmdPackager::kMinHeaderSize));
    add("PACKET_HEAD", std::to_string(zet::PacketWriter::kHeadSize));
    add("STREAM_LENGTH", std::to_string(UdpClientSocket::kHeadSize));
    add("ADDRESS", std::to_string(sizeof(zet::Uuid)));
    add("MOST_PACKET", std::to_string(int64_t{CCmdPackager::kMaxHeaderSize} + CCmdPackager::kMaxDataSize));
    add("DEEPEST_FRAME", std::to_string(kMostInner));
    std::string mark;
    for (const char byte : zet::inner::kGreetingMark)
        mark.append("\\").append(std::to_string(static_cast<unsigned char>(byte)));
    add("GREETING", "\"" + mark + "\"");
    add("SESSION_MESSAGE", quoted(std::string(kNetCommandName)));
    return out + "\n";
}

} // namespace

std::string luaSchema()
{
    return luaConstants() +
           "-- The wire order of each class.\n"
           "local classes, class_names = {}, {}\n"
           "local function class(name, attributes, fields)\n"
           "    attributes.fields = fields\n"
           "    classes[name] = attributes\n"
           "    class_names[#class_names + 1] = name\n"
           "end\n\n" +
           LuaSchema().text() + "\n";
}

} // namespace tools
