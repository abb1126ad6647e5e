#include "tests/support/golden.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace golden
{

using nlohmann::json;

namespace
{

[[noreturn]] void fail(const std::string& place, const std::string& what)
{
    throw std::runtime_error(place + ": " + what);
}

std::string trimmed(std::string text)
{
    const auto solid = [](unsigned char c) { return !std::isspace(c); };
    text.erase(text.begin(), std::find_if(text.begin(), text.end(), solid));
    text.erase(std::find_if(text.rbegin(), text.rend(), solid).base(), text.end());
    return text;
}

// The position of a character outside quotes, from a position on.
size_t findOutside(const std::string& text, char wanted, size_t from)
{
    char quote = 0;
    for (size_t i = from; i < text.size(); ++i)
    {
        const char c = text[i];
        if (quote)
        {
            if (c == '\\' && quote == '"')
                ++i;
            else if (c == quote)
                quote = 0;
        }
        else if (c == wanted)
        {
            return i;
        }
        else if (c == '"' || c == '\'')
        {
            quote = c;
        }
    }
    return std::string::npos;
}

std::string key(const std::string& className, const std::string& form, const std::string& name)
{
    return className + ' ' + form + ' ' + name;
}

void putUnit(std::string& out, unsigned unit)
{
    out += static_cast<char>(unit & 0xFF);
    out += static_cast<char>(unit >> 8);
}

void putCount(std::string& out, unsigned count)
{
    if (count <= 0x3F)
    {
        out += static_cast<char>(count);
    }
    else if (count <= 0x3FFF)
    {
        out += static_cast<char>(count >> 8 | 0x40);
        out += static_cast<char>(count & 0xFF);
    }
    else
    {
        throw std::runtime_error("a golden text is too long");
    }
}

// A text in the form of a width. The vectors' texts have characters of the basic plane only, so units are characters.
std::string textBytes(const std::string& utf8, Width width)
{
    std::vector<unsigned> units;
    for (size_t i = 0; i < utf8.size();)
    {
        const unsigned char lead = static_cast<unsigned char>(utf8[i]);
        const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : 2;
        if (lead >= 0xF0)
            throw std::runtime_error("a golden text leaves the basic plane");
        unsigned unit = more == 0 ? lead : more == 1 ? lead & 0x1Fu : lead & 0x0Fu;
        for (int k = 1; k <= more; ++k)
            unit = unit << 6 | (static_cast<unsigned char>(utf8.at(i + static_cast<size_t>(k))) & 0x3Fu);
        units.push_back(unit);
        i += static_cast<size_t>(more) + 1;
    }
    std::string out;
    const unsigned length = static_cast<unsigned>(units.size());
    const unsigned count = length == 0 || width == Width::k16 ? length : 2 * length + 2;
    putCount(out, count);
    for (const unsigned unit : units)
        putUnit(out, unit);
    for (unsigned i = length; i < count; ++i)
        putUnit(out, 0);
    return out;
}

} // namespace

Book::Book(const std::string& folder)
{
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".golden")
            paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    for (const std::string& path : paths)
        load(path);
}

void Book::load(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string line;
    std::string joined;
    int number = 0;
    while (std::getline(file, line))
    {
        ++number;
        const std::string place = std::filesystem::path(path).filename().string() + ":" + std::to_string(number);
        const size_t comment = findOutside(line, '#', 0);
        line = trimmed(comment == std::string::npos ? line : line.substr(0, comment));
        if (!line.empty() && line.back() == '\\')
        {
            joined += line.substr(0, line.size() - 1) + ' ';
            continue;
        }
        line = joined + line;
        joined.clear();
        if (line.empty())
            continue;

        if (line[0] == '[')
        {
            std::istringstream words(line.substr(1, line.find(']') - 1));
            Vector vector;
            if (!(words >> vector.m_Class >> vector.m_Form >> vector.m_Name))
                fail(place, "a header needs a class, a packager and a name");
            vector.m_Place = place;
            if (!m_ByName.emplace(key(vector.m_Class, vector.m_Form, vector.m_Name), m_Vectors.size()).second)
                fail(place, "the vector is defined twice");
            m_Vectors.push_back(vector);
            continue;
        }
        if (m_Vectors.empty())
            fail(place, "a line without a header");
        Vector& vector = m_Vectors.back();
        if (line[0] == '!')
        {
            std::istringstream words(line.substr(1));
            std::string word;
            std::string value;
            words >> word >> value;
            if (word == "read" && (value == "true" || value == "false"))
                vector.m_Read = value == "true";
            else if (word == "consumed")
                vector.m_Consumed = std::stoi(value);
            else if (word == "rewrite")
                vector.m_Rewrite = value;
            else if (word == "only16")
                vector.m_Has32 = false;
            else if (word == "only32")
                vector.m_Has16 = false;
            else
                fail(place, "an unknown directive");
            continue;
        }
        const size_t part = findOutside(line, ';', 0);
        vector.m_Lines.emplace_back(trimmed(line.substr(0, part)),
                                    part == std::string::npos ? "" : trimmed(line.substr(part + 1)));
    }
}

const Vector& Book::find(const std::string& className, const std::string& form, const std::string& name) const
{
    const auto place = m_ByName.find(key(className, form, name));
    if (place == m_ByName.end())
        throw std::runtime_error("no vector [" + key(className, form, name) + "]");
    return m_Vectors[place->second];
}

std::string Book::bytes(const Vector& vector, Width width) const
{
    std::string out;
    for (const auto& line : vector.m_Lines)
        out += items(vector, line.first, width);
    return out;
}

std::string Book::items(const Vector& vector, const std::string& text, Width width) const
{
    std::string out;
    std::string last;
    for (size_t i = 0; i < text.size();)
    {
        const char c = text[i];
        if (std::isspace(static_cast<unsigned char>(c)))
        {
            ++i;
            continue;
        }
        if (c == 'x')
        {
            size_t digits = 0;
            const int times = std::stoi(text.substr(i + 1), &digits);
            for (int k = 1; k < times; ++k)
                out += last;
            if (times == 0)
                out.resize(out.size() - last.size());
            i += 1 + digits;
            continue;
        }
        if (c == '"')
        {
            size_t end = i + 1;
            while (end < text.size() && text[end] != '"')
                end += text[end] == '\\' ? 2 : 1;
            last = textBytes(json::parse(text.substr(i, end + 1 - i)).get<std::string>(), width);
            i = end + 1;
        }
        else if (c == '\'')
        {
            const size_t end = text.find('\'', i + 1);
            last = text.substr(i + 1, end - i - 1);
            i = end + 1;
        }
        else if (c == '{')
        {
            const size_t end = text.find('}', i);
            std::istringstream words(text.substr(i + 1, end - i - 1));
            std::string className;
            std::string name;
            words >> className >> name;
            last = bytes(find(className, vector.m_Form, name), width);
            i = end + 1;
        }
        else if (std::isxdigit(static_cast<unsigned char>(c)) && i + 1 < text.size() &&
                 std::isxdigit(static_cast<unsigned char>(text[i + 1])))
        {
            last = std::string(1, static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16)));
            i += 2;
        }
        else
        {
            fail(vector.m_Place, "no item: " + text.substr(i));
        }
        out += last;
    }
    return out;
}

json Book::members(const Vector& vector) const
{
    json members = json::object();
    for (const auto& line : vector.m_Lines)
        addMeaning(vector, line, members);
    return members;
}

void Book::addMeaning(const Vector& vector, const std::pair<std::string, std::string>& line, json& members) const
{
    const std::string& meaning = line.second;
    if (meaning.empty())
        return;
    if (meaning == "*")
    {
        for (size_t i = line.first.find('{'); i != std::string::npos; i = line.first.find('{', i + 1))
        {
            const size_t end = line.first.find('}', i);
            members.update(json::parse(resolved(vector, line.first.substr(i, end + 1 - i))));
        }
        return;
    }
    const size_t equals = meaning.find('=');
    if (equals == std::string::npos)
        fail(vector.m_Place, "a meaning needs a member and a value: " + meaning);
    try
    {
        members[trimmed(meaning.substr(0, equals))] = json::parse(resolved(vector, meaning.substr(equals + 1)));
    }
    catch (const json::exception& exception)
    {
        fail(vector.m_Place, std::string(exception.what()) + " in " + meaning);
    }
}

std::string Book::resolved(const Vector& vector, const std::string& value) const
{
    std::string out;
    for (size_t i = 0; i < value.size();)
    {
        const size_t brace = findOutside(value, '{', i);
        if (brace == std::string::npos)
            return out + value.substr(i);
        out += value.substr(i, brace - i);
        if (brace + 1 < value.size() && std::isalpha(static_cast<unsigned char>(value[brace + 1])))
        {
            const size_t end = value.find('}', brace);
            std::istringstream words(value.substr(brace + 1, end - brace - 1));
            std::string className;
            std::string name;
            words >> className >> name;
            out += members(find(className, vector.m_Form, name)).dump();
            i = end + 1;
        }
        else
        {
            out += '{';
            i = brace + 1;
        }
    }
    return out;
}

} // namespace golden
