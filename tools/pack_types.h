// The messages inside pack envelopes, by the tables that pack routers print.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace tools
{

struct ClassInfo;

// A text of several tables, each the JSON of host::PackRouter::toJson():
//   {"messages":[{"number":1,"message":"HomePack_LoadData_Request","envelopes":["CCmdHomePackRequest"]},...]}
// one after another or as one array. Other members are ignored.
class PackTypes
{
public:
    // Adds the tables of a text. Returns what is wrong, or the empty text; entries before the fault stay.
    std::string add(std::string_view text);
    // The message with this number in an envelope; null for a number without one.
    const ClassInfo* find(std::string_view envelope, int number) const;
    bool isEmpty() const { return m_Messages.empty(); }

private:
    std::map<std::pair<std::string, int>, const ClassInfo*, std::less<>> m_Messages;
};

} // namespace tools
