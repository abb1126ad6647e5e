// A folder for the files of the file log, deleted with the object.
#pragma once

#include "framework/log.h"
#include "framework/module.h"
#include "framework/platform/platform.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace test
{

class LogFolder
{
public:
    LogFolder()
    {
        const zet::String_T<wchar_t> name = zet::platform::createTempFile(zet::platform::getTempDirectory());
        m_Path = std::filesystem::path(name.getBuffer());
        std::filesystem::remove(m_Path);
        std::filesystem::create_directory(m_Path);
    }
    ~LogFolder() { std::filesystem::remove_all(m_Path); }
    LogFolder(const LogFolder&) = delete;
    LogFolder& operator=(const LogFolder&) = delete;

    // Loads the file log, if not loaded yet, and sets its path to the folder.
    bool use(const std::wstring& below = L"") const
    {
        const std::wstring path = L"FileLog@path=" + (m_Path / below).generic_wstring() + L"/";
        zet::Log::setparam(path.c_str());
        return zet::DllModule::createInstance()->load(L"zet_FileLog.dll");
    }

    // The complete lines of all files.
    std::vector<std::string> lines() const
    {
        std::vector<std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_Path))
        {
            std::ifstream file(entry.path(), std::ios::binary);
            std::string line;
            while (entry.is_regular_file() && std::getline(file, line) && !file.eof())
                all.push_back(line);
        }
        return all;
    }

    // A line without its time.
    static std::string withoutTime(const std::string& line)
    {
        static const std::regex stamp(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )");
        std::smatch match;
        return std::regex_search(line, match, stamp) ? match.suffix().str() : "no time: " + line;
    }

    std::filesystem::path m_Path;
};

} // namespace test
