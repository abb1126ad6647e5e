#include "tools/codec/codec_text.h"

#include "tools/codec/codec_members.h"
#include "tools/codec/codec_order.h"
#include "tools/embedded_files.h"
#include "tools/schema_fields.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <vector>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

constexpr size_t kWidth = 120;
constexpr std::string_view kTypesFrom = "\xE2\x9F\xA6";
constexpr std::string_view kTypesTo = "\xE2\x9F\xA7";

// Without the marked parts, or with the parts but without their marks.
std::string unmarked(std::string_view marked, bool keepsTypes)
{
    std::string plain;
    for (size_t at = 0; at < marked.size();)
    {
        const size_t from = marked.find(kTypesFrom, at);
        plain += marked.substr(at, from - at);
        if (from == std::string_view::npos)
            break;
        const size_t to = marked.find(kTypesTo, from);
        if (keepsTypes)
            plain += marked.substr(from + kTypesFrom.size(), to - from - kTypesFrom.size());
        at = to + kTypesTo.size();
    }
    return plain;
}

// Makes the text of one module. For TypeScript, types are marked as in the runtime.
class Generator
{
public:
    Generator(const ordered_json& document, Language language, const std::string& version)
        : m_Document(document), m_IsPython(language == Language::kPython), m_Language(language), m_Version(version),
          m_Order(m_IsPython), m_Members(document, m_IsPython)
    {
    }

    std::string run()
    {
        m_Out = m_IsPython ? "\"\"\"" : "";
        comment("The wire of commonground: every command, record and message with its bytes.");
        comment("");
        comment("Made by wirelens " + m_Version + " from its schemas (wirelens generate): do not edit. docs/wire.md");
        comment("explains the forms. A pack command carries a message as bytes:");
        comment("");
        if (m_IsPython)
        {
            comment("    envelope = CCmdHomePackRequest(m_PackType=7, m_PackData=message.encode())");
            comment("    sock.sendall(frame_of(envelope).packet())");
            m_Out += "\"\"\"\nfrom __future__ import annotations\n\n";
        }
        else
        {
            comment("    const envelope = make(CCmdHomePackRequest, { m_PackType: 7, m_PackData: message.encode() });");
            comment("    socket.write(frameOf(envelope).packet());");
            m_Out += "\n";
        }
        // In that of TypeScript, what only TypeScript has is in ⟦⟧.
        const std::string runtime =
            m_IsPython
                ? joined({embedded::codec_values_py, embedded::codec_steps_py, embedded::codec_messages_py}, "\n\n")
                : joined({embedded::codec_values_ts, embedded::codec_steps_ts, embedded::codec_messages_ts}, "\n");
        if (m_IsPython)
        {
            const size_t place = runtime.find("\n\nclass ");
            m_Out += runtime.substr(0, place) + "\n" + limits() + runtime.substr(place);
        }
        else
        {
            m_Out += limits() + "\n" + runtime;
        }
        types();
        heads();
        for (const ordered_json& each : m_Document["classes"])
            oneClass(each);
        commands();
        return m_IsPython ? m_Out : unmarked(m_Out, m_Language == Language::kTypeScript);
    }

private:
    void comment(const std::string& line) { m_Out += (m_IsPython ? "" : line.empty() ? "//" : "// ") + line + "\n"; }
    static std::string marked(const std::string& type) { return std::string(kTypesFrom).append(type).append(kTypesTo); }

    std::string limits() const
    {
        const ordered_json& limits = m_Document["limits"];
        if (m_IsPython)
            return "LIMITS: dict[str, Any] = " + limits.dump() + "\n";
        return "const LIMITS" +
               marked(
                   ": Record<\"cmd\" | \"data\", { bytes: number; text_units?: number; buffer_bytes?: number }> & {\n"
                   "  trusted_count: number;\n}") +
               " = " + limits.dump() + ";\n";
    }

    void types()
    {
        m_Out += m_IsPython ? "\n\n" : "\n";
        for (const auto& [name, type] : m_Document["types"].items())
        {
            // Those that other forms use, or that are steps of their own.
            if (name == "int" || name == "count" || name == "version" || name == "payload")
                continue;
            const std::string kind = textOf(type, "kind");
            const std::string bytes = type.value("bytes", ordered_json(0)).dump();
            std::string value;
            if (kind == "number")
                value = m_Order.made(m_IsPython ? "Number" : "Num", {bytes, type.value("signed", false) ? m_Order.yes()
                                                                            : m_IsPython                ? "False"
                                                                                                        : "false"});
            else if (kind == "raw")
                value = m_Order.made("Raw", {bytes});
            else
                value = m_Order.made(kind == "bool"    ? "Bool"
                                     : kind == "float" ? "Float"
                                     : kind == "text"  ? "Text"
                                                       : "Buffer",
                                     {});
            statement((m_IsPython ? "" : "const ") + CodecOrder::constantOf(name) + " = " + value);
        }
    }
    void statement(const std::string& line) { m_Out += line + (m_IsPython ? "\n" : ";\n"); }

    // The heads of commands, which are the first fields of nearly all.
    void heads()
    {
        for (const ordered_json& each : m_Document["classes"])
            for (const std::string& head : m_Order.takeHeads(each))
            {
                const size_t name = head.find(' ');
                statement((m_IsPython ? "" : "const ") + head.substr(0, name) +
                          (m_IsPython ? ": list[Step]" : marked(": Step[]")) + head.substr(name));
            }
    }

    void member(const ordered_json& field, std::set<std::string>& seen)
    {
        const std::string name = memberOf(textOf(field, "name"));
        if (name.empty() || !seen.insert(name).second)
            return;
        bool isMade = false;
        std::string value = m_Members.valueOf(field, field.contains("default") ? &field["default"] : nullptr, isMade);
        const std::string hint = m_Members.hintOf(field);
        if (m_IsPython)
        {
            if (isMade)
                value = "field(default_factory=" +
                        (value == "[]"   ? "list"
                         : value == "{}" ? "dict"
                                         : "lambda: " + value) +
                        ")";
            m_Out += "    " + name + ": " + hint + " = " + value + "\n";
        }
        else
        {
            m_Out += "  " + name + marked(": " + hint) + " = " + value + ";\n";
        }
    }

    void oneClass(const ordered_json& each)
    {
        const std::string name = textOf(each, "class");
        const bool isCommand = textOf(each, "family") == "command";
        const std::string indent = m_IsPython ? "    " : "  ";
        const std::string kept = m_IsPython ? "" : "static ";
        const std::string end = m_IsPython ? "\n" : ";\n";
        m_Out += m_IsPython ? "\n\n@dataclass\nclass " + name + (isCommand ? "(Command):\n" : "(Message):\n")
                            : "\n// " + aboutOf(each) + "\nexport class " + name +
                                  (isCommand ? " extends Command {\n" : " extends Message {\n");
        if (m_IsPython)
            m_Out += "    \"\"\"" + aboutOf(each) + "\"\"\"\n\n";
        if (isCommand)
            m_Out += indent + kept + "ID = " + textOf(each, "id") + end;
        if (each.contains("forms") && each["forms"] != ordered_json::array({"cmd"}))
        {
            std::vector<std::string> forms;
            for (const ordered_json& form : each["forms"])
                forms.push_back(form.dump());
            m_Out += indent + kept + "FORMS" + (m_IsPython ? "" : marked(": readonly Form[]")) + " = " +
                     (m_IsPython ? "(" + joined(forms, ", ") + (forms.size() == 1 ? ",)" : ")")
                                 : "[" + joined(forms, ", ") + "]") +
                     end;
        }
        m_Out += indent + kept + "SMALLEST = " + each["smallest"].dump() + end;
        m_Out += indent + kept + "ORDER" + (m_IsPython ? ": ClassVar[list[Step]]" : marked(": readonly Step[]")) +
                 " = " + wrapped(m_Order.orderOf(each), indent) + end;
        std::set<std::string> seen;
        for (const ordered_json& field : each["fields"])
            if (field.contains("columns"))
                for (const ordered_json& column : field["columns"])
                    member(column, seen);
            else
                member(field, seen);
        if (!m_IsPython)
            m_Out += "}\n";
    }
    static std::string aboutOf(const ordered_json& each)
    {
        const std::string family = textOf(each, "family");
        if (family == "command")
            return "Command " + textOf(each, "id") + " on " + textOf(each, "base") + ".";
        if (family != "message")
            return family == "record" ? "A record." : "A part of records.";
        const std::string other = textOf(each, "or_envelope");
        return "A message in " + textOf(each, "envelope") + (other.empty() ? "." : " or " + other + ".");
    }
    // A list in one line, or with a line for each element.
    static std::string wrapped(const std::vector<std::string>& steps, const std::string& indent)
    {
        const std::string line = "[" + joined(steps, ", ") + "]";
        if (indent.size() + line.size() + 40 <= kWidth)
            return line;
        std::string lines = "[\n";
        for (const std::string& step : steps)
            lines.append(indent).append(indent).append(step).append(",\n");
        return lines + indent + "]";
    }

    void commands()
    {
        std::map<std::string, std::vector<std::string>> byId;
        for (const ordered_json& each : m_Document["classes"])
            if (textOf(each, "family") == "command")
                byId[textOf(each, "id")].push_back(textOf(each, "class"));
        m_Out += m_IsPython ? "\n\n# The commands of each id: one, or two that share it.\n"
                            : "\n// The commands of each id: one, or two that share it.\n";
        m_Out += m_IsPython ? "COMMANDS: dict[int, list[type[Command]]] = {\n"
                            : "export const COMMANDS" + marked(": ReadonlyMap<number, readonly CommandClass[]>") +
                                  " = new Map" + marked("<number, readonly CommandClass[]>") + "([\n";
        for (const auto& [id, names] : byId)
            m_Out += m_IsPython ? "    " + id + ": [" + joined(names, ", ") + "],\n"
                                : "  [" + id + ", [" + joined(names, ", ") + "]],\n";
        m_Out += m_IsPython ? "}\n" : "]);\n";

        m_Out += m_IsPython ? "\nCLASSES: dict[str, type[Message]] = {each.__name__: each for each in [\n"
                            : "\nexport const CLASSES" + marked(": Record<string, MessageClass>") + " = {\n";
        for (const ordered_json& each : m_Document["classes"])
            m_Out += (m_IsPython ? "    " : "  ") + textOf(each, "class") + ",\n";
        m_Out += m_IsPython ? "]}\n" : "};\n";
    }

    const ordered_json& m_Document;
    const bool m_IsPython;
    const Language m_Language;
    const std::string m_Version;
    CodecOrder m_Order;
    CodecMembers m_Members;
    std::string m_Out;
};

} // namespace

std::string codecText(const ordered_json& document, Language language, const std::string& version)
{
    return Generator(document, language, version).run();
}

} // namespace tools
