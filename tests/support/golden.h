// Loads the golden vectors; tests/golden/README.md describes the format.
#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace golden
{

// The width of text, in bytes, of a vector's bytes.
enum class Width
{
    k16 = 2,
    k32 = 4
};

// The width that this build writes.
constexpr Width kNative = sizeof(wchar_t) == 2 ? Width::k16 : Width::k32;

struct Vector
{
    std::string m_Class;
    std::string m_Form;
    std::string m_Name;
    // File and line, for messages.
    std::string m_Place;
    bool m_Read = true;
    int m_Consumed = -1;
    // The vector that Write gives: empty for this one, "-" if it is not checked.
    std::string m_Rewrite;
    bool m_Has16 = true;
    bool m_Has32 = true;
    // The lines of the file: bytes, meaning.
    std::vector<std::pair<std::string, std::string>> m_Lines;
};

// All vectors of all files below a folder. Throws std::runtime_error with the position of a format error.
class Book
{
public:
    explicit Book(const std::string& folder);

    const std::vector<Vector>& all() const { return m_Vectors; }
    const Vector& find(const std::string& className, const std::string& form, const std::string& name) const;
    std::string bytes(const Vector& vector, Width width) const;
    // Every member that the vector gives, including those of its records.
    nlohmann::json members(const Vector& vector) const;

private:
    void load(const std::string& path);
    std::string items(const Vector& vector, const std::string& text, Width width) const;
    void addMeaning(const Vector& vector, const std::pair<std::string, std::string>& line,
                    nlohmann::json& members) const;
    std::string resolved(const Vector& vector, const std::string& value) const;

    std::vector<Vector> m_Vectors;
    std::map<std::string, size_t> m_ByName;
};

} // namespace golden
