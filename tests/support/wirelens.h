// wirelens as a program that runs beside a test. POSIX only.
#pragma once

#include "tests/support/child.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

namespace test
{

// A running wirelens; its input stays open.
inline std::unique_ptr<Child> startWirelens(const std::vector<std::string>& arguments)
{
    std::vector<std::string> words = getStartWords("wirelens");
    words.insert(words.end(), arguments.begin(), arguments.end());
    return std::make_unique<Child>(words);
}

// The port on which it says it listens; empty, with a failure, if it does not.
inline std::string portOf(Child& child)
{
    const std::string before = "listening on port ";
    const std::string output = child.outputWith(before);
    const size_t at = output.find(before);
    EXPECT_NE(at, std::string::npos) << output;
    if (at == std::string::npos)
        return "";
    const std::string& line = child.outputWith("\n");
    return line.substr(at + before.size(), line.find('\n', at) - at - before.size());
}

// A file of the running test, with this content. Removed at the end.
class TestFile
{
public:
    TestFile(const std::string& name, const std::string& content)
        : m_Path(testing::TempDir() + "commonground_" +
                 testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "_" +
                 testing::UnitTest::GetInstance()->current_test_info()->name() + "_" + std::to_string(getpid()) + "_" +
                 name)
    {
        std::ofstream(m_Path, std::ios::binary) << content;
    }
    ~TestFile() { std::remove(m_Path.c_str()); }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    const std::string& path() const { return m_Path; }

private:
    const std::string m_Path;
};

} // namespace test
