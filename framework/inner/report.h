// How a guard tells what it caught.
#pragma once

namespace zet::inner
{

// Runs a report from within a catch. A report fills a pattern, which takes memory: without memory the line is
// lost and the guard holds all the same.
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
