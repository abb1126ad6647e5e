// The command line: a role, and options of the form "--name value".
#pragma once

#include <map>
#include <string>
#include <vector>

namespace arena
{

class Options
{
public:
    // Parses the arguments after the role. False if a name has no value, is given twice or is unknown; getError() names
    // it.
    bool parse(const std::vector<std::string>& words, const std::vector<std::string>& allowed);

    bool has(const std::string& name) const { return m_Values.count(name) > 0; }
    // The text of an option, or the empty text.
    std::string getText(const std::string& name) const;
    // The number of an option. False, and the error is set, if it is missing or out of the given range.
    bool getNumber(const std::string& name, int least, int most, int& number);
    const std::string& getError() const { return m_Error; }

private:
    std::map<std::string, std::string> m_Values;
    std::string m_Error;
};

} // namespace arena
