#include "tests/support/run_program.h"

#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#ifndef _WIN32
#include <sys/wait.h>
#endif

namespace test
{

namespace
{

std::string quoted(const std::filesystem::path& path)
{
    return '"' + std::filesystem::path(path).make_preferred().string() + '"';
}

} // namespace

Run runProgram(const std::string& name, const std::string& words, const std::string& input)
{
    const std::filesystem::path folder(getBuildFolder());
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string stem = name + "_" + test.test_suite_name() + "_" + test.name();
    const std::filesystem::path in = folder / (stem + ".in");
    const std::filesystem::path out = folder / (stem + ".out");
    std::ofstream(in, std::ios::binary) << input;
    std::string command =
        getStarter() + quoted(folder / name) + " " + words + " < " + quoted(in) + " > " + quoted(out) + " 2>&1";
#ifdef _WIN32
    // That shell removes the first and the last quote of a command.
    command = '"' + command + '"';
#endif
    Run run;
    const int status = std::system(command.c_str());
#ifdef _WIN32
    run.m_Code = status;
#else
    run.m_Code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
    std::ifstream file(out, std::ios::binary);
    run.m_Output.assign(std::istreambuf_iterator<char>(file), {});
#ifdef _WIN32
    std::erase(run.m_Output, '\r');
#endif
    file.close();
    std::filesystem::remove(in);
    std::filesystem::remove(out);
    return run;
}

} // namespace test
