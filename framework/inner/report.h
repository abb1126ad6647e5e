// Logging from within a catch block.
#pragma once

namespace zet::inner
{

// Runs a report from within a catch block. A report formats a line, which allocates: without memory the line is lost,
// but nothing is thrown.
template <class Report>
void report(Report tell) noexcept
{
    try
    {
        tell();
    }
    catch (...)
    {
    }
}

} // namespace zet::inner
