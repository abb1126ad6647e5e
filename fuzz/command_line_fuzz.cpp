// Command lines: the sizing pass returns exactly what the second pass fills, and parameters are parts of the arguments.
#include "fuzz/support/require.h"
#include "runtime/utility.h"

#include <cstdint>
#include <cwchar>
#include <string>
#include <vector>

namespace
{

using fuzz::require;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring line(data, data + size);
    int numargs = 0;
    int numchars = 0;
    CZETUtility::parse_cmdline(line.c_str(), nullptr, nullptr, &numargs, &numchars);
    require(numargs >= 2 && numchars >= 1);
    // Blocks of exactly these sizes, so that a sanitizer detects access to the first unit after them.
    std::vector<wchar_t*> argv(static_cast<std::size_t>(numargs));
    std::vector<wchar_t> args(static_cast<std::size_t>(numchars));
    int sameArgs = 0;
    int sameChars = 0;
    CZETUtility::parse_cmdline(line.c_str(), argv.data(), args.data(), &sameArgs, &sameChars);
    require(sameArgs == numargs && sameChars == numchars && argv.back() == nullptr);
    // The arguments are consecutive and fill the block.
    const wchar_t* at = args.data();
    for (int i = 0; i < numargs - 1; ++i)
    {
        require(argv[static_cast<std::size_t>(i)] == at);
        at += std::wcslen(at) + 1;
    }
    require(at == args.data() + args.size());

    const zet::String_T<wchar_t> value = CZETUtility::ParseParameterStr(line.c_str(), L"n", L"\x1");
    bool isPart = value == L"\x1";
    for (int i = 0; i < numargs - 1 && !isPart; ++i)
        isPart = std::wcsstr(argv[static_cast<std::size_t>(i)], value) != nullptr;
    require(isPart);
    CZETUtility::ParseParameterInt(line.c_str(), L"n", 1);
    return 0;
}
