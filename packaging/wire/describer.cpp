#include "packaging/wire/describer.h"

namespace wire
{

std::string Names::next()
{
    int depth = 0;
    size_t end = 0;
    while (end < m_Left.size() && (m_Left[end] != ',' || depth > 0))
    {
        const char c = m_Left[end++];
        depth += c == '(' || c == '[' || c == '<' ? 1 : c == ')' || c == ']' || c == '>' ? -1 : 0;
    }
    std::string_view name = m_Left.substr(0, end);
    m_Left.remove_prefix(end < m_Left.size() ? end + 1 : end);
    while (!name.empty() && (name.front() == ' ' || name.front() == '\n'))
        name.remove_prefix(1);
    if (name.substr(0, 2) == "r.")
        name.remove_prefix(2);
    return std::string(name);
}

void push(Schema& schema, Field&& field)
{
    schema.smallest += field.smallest;
    schema.fields.push_back(std::move(field));
}

} // namespace wire
