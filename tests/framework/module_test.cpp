#include "framework/module.h"

#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/yield.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

using zet::DllModule;
using zet::Log;
using Module = zet::Unknown::Handle_T<DllModule>;

namespace
{

// A directory for one test, deleted afterwards.
class TempDirectory
{
public:
    TempDirectory()
    {
        zet::Uuid id;
        EXPECT_EQ(zet::uuid_create(id), 0);
        m_Path = std::filesystem::temp_directory_path() /
                 std::wstring(L"commonground-" + std::wstring(id.m_Node.convertToString().getBuffer()));
    }
    ~TempDirectory() { std::filesystem::remove_all(m_Path); }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;

    std::vector<std::string> getLines() const
    {
        std::vector<std::string> lines;
        if (!std::filesystem::exists(m_Path))
            return lines;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_Path))
        {
            std::ifstream file(entry.path(), std::ios::binary);
            for (std::string line; entry.is_regular_file() && std::getline(file, line);)
                lines.push_back(line);
        }
        return lines;
    }

    std::filesystem::path m_Path;
};

std::string withoutTime(const std::string& line)
{
    static const std::regex stamp(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )");
    std::smatch match;
    EXPECT_TRUE(std::regex_search(line, match, stamp)) << line;
    return match.suffix();
}

} // namespace

TEST(Module, WhatIsNotThereDoesNotLoad)
{
    const Module module = DllModule::createInstance();
    EXPECT_FALSE(module->load(L"zet_NoSuchModule.dll"));
    EXPECT_FALSE(module->load(L""));
    EXPECT_FALSE(module->load(nullptr));
    EXPECT_FALSE(module->load(L"../zet_FileLog.dll"));
    EXPECT_FALSE(module->load(L"..\\zet_FileLog.dll"));
    EXPECT_FALSE(module->isLoaded());
    EXPECT_EQ(module->findSymbol("zet_getLogModule"), nullptr);
}

TEST(Module, LoadsOnceByTheNameOnTheReferencePlatform)
{
    const Module module = DllModule::createInstance();
    EXPECT_TRUE(module->load(L"zet_ConsoleLog.dll"));
    EXPECT_TRUE(module->isLoaded());
    EXPECT_NE(module->findSymbol("zet_getLogModule"), nullptr);
    EXPECT_EQ(module->findSymbol("zet_noSuchSymbol"), nullptr);
    EXPECT_FALSE(module->load(L"zet_FileLog.dll"));
}

TEST(ConsoleLog, ShowsEachLineAsItComes)
{
    // The module object is destroyed at once; the log module stays.
    ASSERT_TRUE(DllModule::createInstance()->load(L"zet_ConsoleLog.dll"));
    testing::internal::CaptureStderr();
    Log::message(L"before start");
    Log::start();
    Log::warning(L"\u4E2D %d", 5);
    Log::stop();
    std::string shown = testing::internal::GetCapturedStderr();
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.back(), '\n');
    shown.pop_back();
    EXPECT_EQ(withoutTime(shown), "[W] \xE4\xB8\xAD 5");
}

TEST(FileLog, WritesUtf8LinesBelowItsPath)
{
    const TempDirectory directory;
    ASSERT_TRUE(DllModule::createInstance()->load(L"zet_FileLog.dll"));
    testing::internal::CaptureStderr();
    Log::start();
    // The path is set after the start, and its directories do not exist yet.
    Log::setparam(
        zet::formatText(L"FileLog@path=%s/log/game/", directory.m_Path.generic_wstring().c_str()).getBuffer());
    Log::message(L"\u4E0D\u80FD");
    Log::message(L"second");
    Log::error(L"third");
    EXPECT_TRUE(Log::flush(10000));
    EXPECT_EQ(directory.getLines().size(), 3u);
    Log::message(L"fourth");
    Log::message(L"fifth");
    EXPECT_TRUE(Log::flush(10000));
    // Still running: the written lines are already in the file.
    const std::vector<std::string> lines = directory.getLines();
    Log::stop();
    Log::message(L"behind stop");
    testing::internal::GetCapturedStderr();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(withoutTime(lines[0]), "[M] \xE4\xB8\x8D\xE8\x83\xBD");
    EXPECT_EQ(withoutTime(lines[2]), "[E] third");
    EXPECT_EQ(withoutTime(lines[4]), "[M] fifth");
    EXPECT_EQ(directory.getLines().size(), 5u);

    // A new start continues in the same file.
    testing::internal::CaptureStderr();
    Log::start();
    Log::message(L"sixth");
    Log::stop();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(directory.getLines().size(), 6u);
    EXPECT_TRUE(std::filesystem::is_directory(directory.m_Path / "log" / "game"));
}

TEST(FileLog, PathThatCannotBeMadeCostsOnlyTheLines)
{
    const TempDirectory directory;
    std::filesystem::create_directory(directory.m_Path);
    std::ofstream(directory.m_Path / "file") << "no directory";
    ASSERT_TRUE(DllModule::createInstance()->load(L"zet_FileLog.dll"));
    testing::internal::CaptureStderr();
    Log::start();
    Log::setparam(zet::formatText(L"FileLog@path=%s/file/", directory.m_Path.generic_wstring().c_str()).getBuffer());
    Log::error(L"lost");
    Log::whistle(false);
    Log::setparam(zet::formatText(L"FileLog@path=%s/good", directory.m_Path.generic_wstring().c_str()).getBuffer());
    Log::error(L"kept");
    Log::setparam(L"FileLog@path=");
    Log::error(L"nowhere");
    Log::stop();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("[E] FileLog: cannot write "), std::string::npos);
    std::vector<std::string> lines = directory.getLines();
    std::erase(lines, "no directory");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(withoutTime(lines[0]), "[E] kept");
    EXPECT_EQ(withoutTime(lines[1]), "[W] FileLog writes again: 1 lines are lost");
}

TEST(Yield, BelongsToTheSystemThatItIsGiven)
{
    const zet::Unknown::Handle_T<zet::Yield> yield = zet::Yield::createInstance();
    EXPECT_EQ(yield->getSystem(), nullptr);
    // The system is only passed on here, so any address works.
    int place = 0;
    zet::System* const system = reinterpret_cast<zet::System*>(&place);
    yield->attach(system);
    EXPECT_EQ(yield->getSystem(), system);
    yield->yield();
    yield->detach();
    EXPECT_EQ(yield->getSystem(), nullptr);
}
