// Tests what docs/operating.md states about rotating log files.
#include "framework/log.h"
#include "framework/module.h"
#include "framework/string_helper.h"
#include "framework/uuid.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace
{

using zet::Log;

constexpr unsigned int kMostMilliseconds = 60000;

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class LogRotation : public testing::Test
{
protected:
    LogRotation()
    {
        zet::Uuid id;
        EXPECT_EQ(zet::uuid_create(id), 0);
        m_Directory = std::filesystem::temp_directory_path() /
                      std::wstring(L"commonground-" + std::wstring(id.m_Node.convertToString().getBuffer()));
        zet::DllModule::createInstance()->load(L"zet_FileLog.dll");
        testing::internal::CaptureStderr();
        Log::start();
        Log::setparam(zet::formatText(L"FileLog@path=%s/", m_Directory.generic_wstring().c_str()).getBuffer());
    }
    ~LogRotation() override
    {
        Log::stop();
        Log::setparam(L"FileLog@path=");
        testing::internal::GetCapturedStderr();
        std::filesystem::remove_all(m_Directory);
    }

    // The content of today's file; empty if there is no file.
    std::filesystem::path file() const
    {
        EXPECT_TRUE(Log::flush(kMostMilliseconds));
        for (const auto& entry : std::filesystem::directory_iterator(m_Directory))
            return entry.path();
        return {};
    }

    std::filesystem::path m_Directory;
};

TEST_F(LogRotation, AFileThatIsTruncatedGoesOnAtItsBeginning)
{
    Log::error(L"before the copy");
    const auto path = file();
    ASSERT_NE(contentOf(path).find("before the copy"), std::string::npos);
    std::filesystem::resize_file(path, 0);
    Log::error(L"after the copy");
    EXPECT_TRUE(Log::flush(kMostMilliseconds));
    const std::string content = contentOf(path);
    EXPECT_EQ(content.find("before"), std::string::npos);
    EXPECT_NE(content.find("after the copy"), std::string::npos);
    EXPECT_EQ(content.find('\0'), std::string::npos);
}

TEST_F(LogRotation, AFileThatIsMovedTakesTheLinesAlong)
{
    Log::error(L"before the move");
    const auto path = file();
    const auto moved = m_Directory / "moved";
    std::filesystem::rename(path, moved);
    Log::error(L"after the move");
    EXPECT_TRUE(Log::flush(kMostMilliseconds));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_NE(contentOf(moved).find("after the move"), std::string::npos);
}

} // namespace
