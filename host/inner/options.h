// The options of a service: variables that its command line sets, and their help text.
#pragma once

#include "host/service.h"

#include <string>
#include <vector>

namespace host::inner
{

class Options
{
public:
    // The value of the target now is shown as the default.
    void add(const char* name, OptionTarget target, const char* help);
    // Sets the targets. Returns what is wrong with the line, or the empty text.
    std::string parse(int count, char** words) const;
    // "  --port NUMBER  the port to listen on (8000)", a line each.
    std::string getHelp() const;

private:
    struct Row
    {
        std::string m_Name;
        OptionTarget m_Target;
        std::string m_Help;
        std::string m_Default;
    };

    std::vector<Row> m_Rows;
};

} // namespace host::inner
