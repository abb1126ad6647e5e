// Collects log lines during its lifetime.
#pragma once

#include "framework/log.h"

#include <mutex>
#include <string>
#include <vector>

namespace test
{

class LogLines
{
public:
    LogLines()
        : m_Number(zet::Log::addSink(
              [this](zet::Log::Level level, const zet::String_T<wchar_t>& line)
              {
                  const std::lock_guard lock(m_Mutex);
                  m_Lines.emplace_back(level, std::wstring(line.getBuffer(), static_cast<size_t>(line.getLength())));
              }))
    {
    }
    ~LogLines() { zet::Log::removeSink(m_Number); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    std::vector<std::wstring> texts() const
    {
        const std::lock_guard lock(m_Mutex);
        std::vector<std::wstring> all;
        for (const auto& line : m_Lines)
            all.push_back(line.second);
        return all;
    }
    bool has(zet::Log::Level level, const std::wstring& text) const
    {
        const std::lock_guard lock(m_Mutex);
        for (const auto& line : m_Lines)
            if (line.first == level && line.second == text)
                return true;
        return false;
    }

private:
    mutable std::mutex m_Mutex;
    std::vector<std::pair<zet::Log::Level, std::wstring>> m_Lines;
    int m_Number;
};

} // namespace test
