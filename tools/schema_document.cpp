#include "tools/schema_document.h"

#include "tools/object_json.h"
#include "tools/schema_text.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <vector>

namespace tools
{

using nlohmann::ordered_json;
using wire::Field;
using wire::Kind;

namespace
{

constexpr char kName[] = "commonground wire schema";

// The byte forms of values. Numbers are big-endian.
ordered_json types()
{
    const auto number = [](int bytes, bool isSigned) {
        return ordered_json{{"kind", "number"}, {"bytes", bytes}, {"signed", isSigned}};
    };
    // A map is sent by ascending keys.
    const auto raw = [](int bytes, const char* order) {
        return ordered_json{{"kind", "raw"}, {"bytes", bytes}, {"keys_ascend_by", order}};
    };
    return {{"bool", {{"kind", "bool"}, {"bytes", 1}}},
            {"char", number(1, true)},
            {"unsigned char", number(1, false)},
            {"short", number(2, true)},
            {"unsigned short", number(2, false)},
            {"int", number(4, true)},
            {"unsigned long", number(4, false)},
            {"version", number(2, false)},
            {"count", number(4, true)},
            {"float", {{"kind", "float"}, {"smallest", 1}}},
            {"text", {{"kind", "text"}, {"smallest", 1}, {"keys_ascend_by", "units"}}},
            {"uuid", raw(16, "bytes")},
            {"node", raw(6, "units of two bytes, low byte first")},
            {"buffer", {{"kind", "buffer"}, {"smallest", 4}}},
            {"payload", {{"kind", "buffer"}, {"smallest", 4}}}};
}

ordered_json limits()
{
    return {{"cmd",
             {{"bytes", CCmdPackager::kMaxDataSize},
              {"text_units", CCmdPackager::kMaxTextUnits},
              {"buffer_bytes", CCmdPackager::kMaxBufferSize}}},
            {"data", {{"bytes", CDataPackager().GetBufferSize()}}},
            {"trusted_count", wire::kTrustedCount}};
}

// Makes one document. Remembers the default objects of records, which those of their holders are compared with.
class Maker
{
public:
    ordered_json classOf(const ClassInfo& info)
    {
        const wire::Schema& schema = info.m_Wire();
        ordered_json json = {{"class", info.m_Name}, {"family", familyName(info.m_Family)}};
        if (info.m_Family == Family::kCommand)
            json.update({{"id", idText(info)}, {"base", info.m_Base}});
        if (info.m_Family == Family::kMessage)
            json["envelope"] = info.m_Base;
        if (*info.m_OtherEnvelope)
            json["or_envelope"] = info.m_OtherEnvelope;
        json["forms"] = ordered_json::array();
        std::istringstream forms(formsOf(info));
        for (std::string form; forms >> form;)
            json["forms"].push_back(form);
        add(json, schema, defaultsOf(schema));
        return json;
    }

    // A record that no row of the tables names.
    ordered_json partOf(const wire::Schema& schema)
    {
        ordered_json json = {{"class", schema.name}, {"family", "part"}};
        add(json, schema, defaultsOf(schema));
        return json;
    }

    static void addRecords(const Field& field, std::vector<const wire::Schema*>& all)
    {
        if (field.record)
            addRecords(*field.record, all);
        for (const Field& part : field.parts)
            addRecords(part, all);
    }
    static void addRecords(const wire::Schema& schema, std::vector<const wire::Schema*>& all)
    {
        for (const wire::Schema* const seen : all)
            if (seen == &schema)
                return;
        all.push_back(&schema);
        for (const Field& field : schema.fields)
            addRecords(field, all);
    }

private:
    void add(ordered_json& json, const wire::Schema& schema, const ordered_json& defaults)
    {
        json["smallest"] = schema.smallest;
        ordered_json fields = ordered_json::array();
        const Field* before = nullptr;
        for (const Field& field : schema.fields)
        {
            fields.push_back(fieldOf(schema, field, defaults));
            // The head's index is the one value that a reader takes untested everywhere.
            if (field.head && before && before->head && before->name.empty())
                fields.back()["words"].push_back("UntestedOnRead");
            before = &field;
        }
        json["fields"] = std::move(fields);
        if (!schema.notSent.empty())
            json["not_sent"] = schema.notSent;
    }

    ordered_json fieldOf(const wire::Schema& schema, const Field& field, const ordered_json& defaults)
    {
        ordered_json json = ordered_json::object();
        if (!field.name.empty() && field.kind != Kind::kCount)
            json["name"] = field.name;
        addType(json, schema, field);
        if (field.kind == Kind::kNumber && field.name.empty())
            json["value"] = field.extent;
        if (isMadeAtLoad(field))
            json["made_at_load"] = true;
        else if (json.contains("name") && defaults.contains(field.name))
            addDefault(json, field, defaults[field.name]);
        if (field.kind == Kind::kTable)
            for (const Field& column : field.parts)
                json["columns"].push_back(fieldOf(schema, column, defaults));
        std::istringstream all(wire::wordsOf(field));
        for (std::string word; all >> word;)
            json["words"].push_back(word);
        return json;
    }

    // Left out where it is made of the defaults of its parts.
    void addDefault(ordered_json& json, const Field& field, const ordered_json& value)
    {
        const bool isMade = field.kind == Kind::kRecord || field.kind == Kind::kArray || field.kind == Kind::kPair ||
                            field.kind == Kind::kList;
        if (!isMade || value != plain(field))
            json["default"] = value;
    }

    void addType(ordered_json& json, const wire::Schema& schema, const Field& field)
    {
        switch (field.kind)
        {
        case Kind::kRecord:
            json["type"] = "record";
            json["record"] = field.record->name;
            return;
        case Kind::kArray:
            json["type"] = "array";
            addLength(json, schema, field);
            json["of"] = typeOf(schema, field.parts[0]);
            return;
        case Kind::kRaw:
            json["type"] = *field.type ? field.type : "bytes";
            if (!*field.type)
                addLength(json, schema, field);
            return;
        case Kind::kPair:
            json["type"] = "pair";
            json["of"] = ordered_json::array({typeOf(schema, field.parts[0]), typeOf(schema, field.parts[1])});
            return;
        case Kind::kList:
            return addList(json, schema, field);
        case Kind::kCount:
            json["type"] = "count";
            json["count_of"] = field.name;
            return;
        case Kind::kTable:
            json["type"] = "table";
            if (field.rows.rows != 0)
                json["rows"] = field.rows.rows;
            if (field.rows.across != 0)
                json["across"] = field.rows.across;
            return;
        case Kind::kPayload:
            json["type"] = field.type;
            json["most"] = field.extent;
            return;
        default:
            json["type"] = field.type;
        }
    }
    ordered_json typeOf(const wire::Schema& schema, const Field& field)
    {
        ordered_json json = ordered_json::object();
        addType(json, schema, field);
        return json;
    }
    static void addLength(ordered_json& json, const wire::Schema& schema, const Field& field)
    {
        if (field.says != wire::Says::kMember)
        {
            json["length"] = field.extent;
            return;
        }
        json["length_of"] = nameAt(schema, field.sizeOffset);
        json["most"] = field.extent;
    }
    void addList(ordered_json& json, const wire::Schema& schema, const Field& field)
    {
        json["type"] = field.how.key == wire::Key::kNone ? "list" : "map";
        if (field.says == wire::Says::kCountBefore)
            json["count"] = "earlier";
        if (field.how.key == wire::Key::kTravels)
            json["key"] = typeOf(schema, field.parts[0]);
        else if (field.how.key == wire::Key::kMember)
            json["key_member"] = nameAt(*field.parts.back().record, field.keyOffset);
        json["of"] = typeOf(schema, field.parts.back());
    }
    static std::string nameAt(const wire::Schema& schema, size_t offset)
    {
        for (const Field& field : schema.fields)
            if (field.offset == offset && !field.name.empty())
                return field.name;
        return "";
    }

    // The fields of a default-made object of this schema.
    const ordered_json& defaultsOf(const wire::Schema& schema)
    {
        const auto known = m_Defaults.find(&schema);
        if (known != m_Defaults.end())
            return known->second;
        ordered_json json = ordered_json::object();
        if (const ClassInfo* const info = findClass(schema.name); info && &info->m_Wire() == &schema)
        {
            json = objectJson(schema, info->make().get());
        }
        else
        {
            for (const Field& field : schema.fields)
                if (!field.name.empty() && field.kind != Kind::kCount)
                    json[field.name] = plain(field);
        }
        return m_Defaults.emplace(&schema, std::move(json)).first->second;
    }
    ordered_json plain(const Field& field)
    {
        const bool isSized = field.says == wire::Says::kMember;
        switch (field.kind)
        {
        case Kind::kNumber:
            return field.isBool ? ordered_json(false) : ordered_json(0);
        case Kind::kFloat:
            return 0.0;
        case Kind::kRaw:
            return std::string(isSized ? 0 : 2 * static_cast<size_t>(field.extent), '0');
        case Kind::kRecord:
            return defaultsOf(*field.record);
        case Kind::kArray:
        {
            ordered_json array = ordered_json::array();
            for (int i = 0; i < (isSized ? 0 : field.extent); ++i)
                array.push_back(plain(field.parts[0]));
            return array;
        }
        case Kind::kPair:
            return ordered_json::array({plain(field.parts[0]), plain(field.parts[1])});
        case Kind::kList:
            return ordered_json::array();
        default:
            return "";
        }
    }

    std::map<const wire::Schema*, ordered_json> m_Defaults;
};

} // namespace

ordered_json schemaWords()
{
    return {
        {"Untested", "nothing decides; a count that cannot be read is 0, an element is kept as far as it was read"},
        {"ElementsUntested", "the count decides, no element does; an element is kept as far as it was read"},
        {"ElementsUntestedOnRead", "ElementsUntested for a reader; a writer tests all"},
        {"UntestedOnRead", "Untested for a reader; a writer tests all"},
        {"UntestedOnWrite", "Untested for a writer; a reader tests all"},
        {"LastElementDecides", "the count and the last element decide; a writer tests all"},
        {"OnlyAboveZero",
         "no element decides; a count that fails or is below 1 succeeds and leaves the list unchanged"},
        {"ClearedFirst", "the list is emptied before its count is read"},
        {"Appends", "elements are added after what the list holds"},
        {"ThroughOneLocal",
         "adjacent lists are read by one variable, made before the first of them: what a failed read "
         "leaves out keeps the value of the element before"},
        {"SizedFirst", "the list is sized to the count, and elements are read in place"},
        {"IntoExistingSlots", "elements are read into those that the list has; elements beyond them are dropped"},
        {"Pairs", "the key of an element is sent before it"},
        {"KeyedBy", "the key of an element is a member of it; the later of two elements with one key is kept"},
        {"KeyedByPosition", "the key of an element is its place on the wire, from 0"},
        {"CountedRows", "the number of rows is the count of the first column, which was sent earlier"},
        {"SaidRows",
         "the number of rows is sent before the table, and then the number of cells across, if there is one; "
         "a number of rows without one across that cannot be read is the writer's own"},
        {"OwnRows", "a number is sent before the table, and readers ignore it"},
        {"EitherWay",
         "adjacent fields with this word are one step: the first that fails ends it, and reading continues"},
        {"SkippedOnFailure", "EitherWay for a reader; a writer tests the fields"},
        {"Again", "a field that was sent before is sent again"},
        {"TriedAnyway", "read whatever failed before it, and never decides: bytes that are missing are 0"},
        {"FromZero", "what cannot be read is 0"},
        {"Unlimited", "the limit of buffers does not hold"},
        {"EndsWellBeforeItsBytes", "a failure before the size ends reading with success, and so does a size below 1"},
    };
}

ordered_json schemaDocument(const ClassInfo* only)
{
    ordered_json document = {{"document", kName}, {"version", kDocumentVersion}};
    if (only)
        document["only"] = only->m_Name;
    document.update({{"limits", limits()}, {"types", types()}, {"words", schemaWords()}});

    std::vector<const wire::Schema*> held;
    if (only)
        Maker::addRecords(only->m_Wire(), held);
    else
        for (const ClassInfo& info : classTable())
            Maker::addRecords(info.m_Wire(), held);

    Maker maker;
    ordered_json classes = ordered_json::array();
    const auto isHeld = [&](const ClassInfo& info)
    { return std::find(held.begin(), held.end(), &info.m_Wire()) != held.end(); };
    for (const ClassInfo& info : classTable())
        if (isHeld(info))
            classes.push_back(maker.classOf(info));
    for (const wire::Schema* const schema : held)
        if (const ClassInfo* const info = findClass(schema->name); !info || &info->m_Wire() != schema)
            classes.push_back(maker.partOf(*schema));
    document["classes"] = std::move(classes);
    return document;
}

std::string documentText(const ordered_json& document)
{
    std::string text = "{";
    for (const auto& [name, value] : document.items())
    {
        text += (text.size() > 1 ? ",\n" : "") + ordered_json(name).dump() + ":";
        if (name != "classes" && name != "words")
        {
            text += value.dump();
            continue;
        }
        const bool isList = value.is_array();
        std::string lines;
        for (const auto& [key, each] : value.items())
            lines += (lines.empty() ? "\n" : ",\n") + (isList ? "" : ordered_json(key).dump() + ":") + each.dump();
        text += (isList ? "[" : "{") + lines + (isList ? "\n]" : "\n}");
    }
    return text + "}\n";
}

namespace
{

// Throws a sentence about the first thing in a document that is not as it should be.
class Check
{
public:
    explicit Check(const ordered_json& document) : m_Document(document) {}

    void run()
    {
        need(m_Document.is_object() && m_Document.value("document", ordered_json()) == kName,
             "it is not a wire schema");
        need(m_Document.value("version", ordered_json()) == kDocumentVersion,
             "its version is not " + std::to_string(kDocumentVersion));
        for (const char* const part : {"limits", "types", "words"})
            need(m_Document.contains(part) && m_Document[part].is_object(), std::string(part) + " is missing");
        need(m_Document.contains("classes") && m_Document["classes"].is_array(), "classes is missing");
        for (const ordered_json& each : m_Document["classes"])
        {
            need(each.is_object() && isText(each, "class") && isText(each, "family"), "a class without name or family");
            need(m_Names.emplace(each["class"], true).second, "two classes " + textOf(each, "class"));
        }
        for (const ordered_json& each : m_Document["classes"])
        {
            m_Place = textOf(each, "class");
            need(each.contains("fields") && each["fields"].is_array(), "fields is missing");
            need(each["family"] != "command" || (isText(each, "id") && isText(each, "base")), "id or base is missing");
            need(each.contains("smallest") && each["smallest"].is_number_integer(), "smallest is missing");
            for (const ordered_json& field : each["fields"])
                checkField(field);
        }
    }

private:
    void need(bool isTrue, const std::string& sentence)
    {
        if (!isTrue)
            throw m_Place.empty() ? sentence : m_Place + ": " + sentence;
    }
    static bool isText(const ordered_json& json, const char* name)
    {
        return json.contains(name) && json[name].is_string();
    }
    static std::string textOf(const ordered_json& json, const char* name) { return json[name].get<std::string>(); }

    void checkField(const ordered_json& field)
    {
        checkType(field);
        need(!field.contains("name") || isText(field, "name"), "a name is not a text");
        if (field.contains("words"))
        {
            need(field["words"].is_array(), "words is not a list");
            for (const ordered_json& word : field["words"])
                need(word.is_string() && m_Document["words"].contains(word.get<std::string>()), "an unknown word");
        }
        if (textOf(field, "type") != "table")
            return;
        need(field.contains("columns") && field["columns"].is_array() && !field["columns"].empty(),
             "a table without columns");
        for (const ordered_json& column : field["columns"])
            checkField(column);
    }
    void checkType(const ordered_json& json)
    {
        need(json.is_object() && isText(json, "type"), "a field without a type");
        const std::string type = textOf(json, "type");
        if (type == "record")
            return need(isText(json, "record") && m_Names.count(textOf(json, "record")) != 0,
                        "a record that is not in the document");
        if (type == "array" || type == "bytes")
            need((json.contains("length") && json["length"].is_number_integer()) ||
                     (isText(json, "length_of") && json.contains("most") && json["most"].is_number_integer()),
                 "a length is missing");
        if (type == "pair")
        {
            need(json.contains("of") && json["of"].is_array() && json["of"].size() == 2, "a pair without two types");
            checkType(json["of"][0]);
            return checkType(json["of"][1]);
        }
        if (type == "array" || type == "list" || type == "map")
        {
            need(json.contains("of"), "a type of elements is missing");
            checkType(json["of"]);
            if (json.contains("key"))
                checkType(json["key"]);
            return;
        }
        if (type == "count")
            return need(isText(json, "count_of"), "a count of nothing");
        need(type == "bytes" || type == "table" || m_Document["types"].contains(type), "an unknown type " + type);
    }

    const ordered_json& m_Document;
    std::string m_Place;
    std::map<std::string, bool> m_Names;
};

} // namespace

std::string documentFault(const ordered_json& document)
{
    try
    {
        Check(document).run();
        return "";
    }
    catch (const std::string& fault)
    {
        return fault;
    }
}

} // namespace tools
