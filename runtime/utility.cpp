#include "runtime/utility.h"

#include "framework/log.h"
#include "framework/platform/hash.h"
#include "framework/platform/platform.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <new>
#include <string_view>

namespace platform = zet::platform;

wchar_t CZETUtility::work_path[kMaxGivenPath + 1];
wchar_t CZETUtility::tempPath[kTempPathRoom];
wchar_t CZETUtility::tempFileName[kTempPathRoom];
std::FILE* CZETUtility::tempFile = nullptr;
bool CZETUtility::initTempFile = false;

namespace
{

using WideText = zet::String_T<wchar_t>;

// The absolute path of the temporary file, and the process that opened it: a forked process inherits the file and the
// clean-up at exit, but must leave the file to its parent.
WideText openFilePath;
unsigned long openFileProcess = 0;

// Units of the work directory that are used for the path of the temporary directory in it.
constexpr int kMaxTempWorkPath = 130;

bool isBlank(wchar_t unit)
{
    return unit == L' ' || unit == L'\t';
}

// Stores the units of the arguments, or only counts them.
class ArgumentWriter
{
public:
    ArgumentWriter(wchar_t** argv, wchar_t* args, int* numargs, int* numchars)
        : m_Argv(argv), m_Args(args), m_NumArgs(numargs), m_NumChars(numchars)
    {
        *m_NumArgs = 0;
        *m_NumChars = 0;
    }

    void begin() { point(m_Args); }
    void end() { point(nullptr); }
    void put(wchar_t unit)
    {
        ++*m_NumChars;
        if (m_Args)
            *m_Args++ = unit;
    }

private:
    void point(wchar_t* place)
    {
        ++*m_NumArgs;
        if (m_Argv)
            *m_Argv++ = place;
    }

    wchar_t** m_Argv;
    wchar_t* m_Args;
    int* m_NumArgs;
    int* m_NumChars;
};

void takeProgram(const wchar_t*& at, ArgumentWriter& out)
{
    bool isQuoted = false;
    for (; *at && (isQuoted || !isBlank(*at)); ++at)
    {
        if (*at == L'"')
            isQuoted = !isQuoted;
        else
            out.put(*at);
    }
    out.put(L'\0');
}

void takeArgument(const wchar_t*& at, ArgumentWriter& out)
{
    bool isQuoted = false;
    for (;;)
    {
        int slashes = 0;
        for (; *at == L'\\'; ++at)
            ++slashes;
        bool isUnitOfText = true;
        if (*at == L'"')
        {
            if (slashes % 2 == 0)
            {
                if (isQuoted && at[1] == L'"')
                    ++at;
                else
                    isUnitOfText = false;
                isQuoted = !isQuoted;
            }
            slashes /= 2;
        }
        for (; slashes > 0; --slashes)
            out.put(L'\\');
        if (!*at || (!isQuoted && isBlank(*at)))
            break;
        if (isUnitOfText)
            out.put(*at);
        ++at;
    }
    out.put(L'\0');
}

// The text after the '=' of "-name=", or null.
const wchar_t* valueOf(const wchar_t* argument, std::wstring_view name)
{
    const wchar_t* at = CZETUtility::SkipSpace(argument);
    if (*at != L'-' || std::wcsncmp(at + 1, name.data(), name.size()) != 0)
        return nullptr;
    at = CZETUtility::SkipSpace(at + 1 + name.size());
    return *at == L'=' ? at + 1 : nullptr;
}

int toInt(const wchar_t* text)
{
    const wchar_t* at = CZETUtility::SkipSpace(text);
    const bool isNegative = *at == L'-';
    if (*at == L'-' || *at == L'+')
        ++at;
    long long number = 0;
    for (; *at >= L'0' && *at <= L'9' && number <= INT_MAX; ++at)
        number = number * 10 + (*at - L'0');
    return static_cast<int>(std::clamp<long long>(isNegative ? -number : number, INT_MIN, INT_MAX));
}

// Copies what fits, with a terminator.
template <size_t size>
void copyPath(wchar_t (&out)[size], const WideText& path)
{
    const size_t length = std::min(static_cast<size_t>(path.getLength()), size - 1);
    std::wmemcpy(out, path.getBuffer(), length);
    out[length] = L'\0';
}

bool isSeparator(wchar_t unit)
{
    return unit && std::wcschr(platform::kPathSeparators, unit) != nullptr;
}

bool enterDirectory(const WideText& path)
{
    if (platform::setCurrentDirectory(path))
        return true;
    zet::Log::error(L"不能设置当前目录[%s]", path);
    zet::Log::whistle(false);
    return false;
}

// Creates each directory of a path. Failure for an existing one is ignored.
void createDirectories(const WideText& path)
{
    const wchar_t* drive = std::wcsstr(path, L":\\");
    for (int end = drive ? static_cast<int>(drive - path.getBuffer()) + 2 : 0; end <= path.getLength(); ++end)
    {
        const bool isBehindName = end > 0 && !isSeparator(path[end - 1]);
        if (isBehindName && (end == path.getLength() || isSeparator(path[end])))
            platform::createDirectory(path.getSubString(0, end));
    }
}

bool openTempFile(const WideText& directory)
{
    CZETUtility::DeleteTempFile();
    if (directory.isEmpty())
        return false;
    createDirectories(directory);
    const WideText name = platform::createTempFile(directory);
    if (name.isEmpty())
        return false;
    CZETUtility::tempFile = platform::openFile(name, "w");
    if (!CZETUtility::tempFile)
    {
        platform::deleteFile(name);
        return false;
    }
    openFilePath = platform::getAbsolutePath(name);
    openFileProcess = platform::getProcessId();
    copyPath(CZETUtility::tempFileName, name);
    copyPath(CZETUtility::tempPath, directory);
    // Registered once per process, however many files follow.
    static const bool isToldAtExit = std::atexit(&CZETUtility::DeleteTempFile) == 0;
    CZETUtility::initTempFile = isToldAtExit;
    return true;
}

zet::String_T<char> toBase64(const unsigned char* data, size_t size)
{
    static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    zet::String_T<char> text;
    char* out = text.resizeForOverwrite(static_cast<int>((size + 2) / 3 * 4));
    for (size_t i = 0; i < size; i += 3)
    {
        const size_t left = std::min<size_t>(size - i, 3);
        unsigned int group = 0;
        for (size_t k = 0; k < 3; ++k)
            group = group << 8 | (k < left ? data[i + k] : 0U);
        for (size_t k = 0; k < 4; ++k)
            *out++ = k <= left ? kDigits[group >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

} // namespace

void CZETUtility::parse_cmdline(const wchar_t* cmdline, wchar_t** argv, wchar_t* args, int* numargs, int* numchars)
{
    ArgumentWriter out(argv, args, numargs, numchars);
    const wchar_t* at = cmdline ? cmdline : L"";
    out.begin();
    takeProgram(at, out);
    for (;;)
    {
        while (isBlank(*at))
            ++at;
        if (!*at)
            break;
        out.begin();
        takeArgument(at, out);
    }
    out.end();
}

const wchar_t* CZETUtility::SkipSpace(const wchar_t* text)
{
    while (text && (*text == L' ' || (*text >= L'\t' && *text <= L'\r')))
        ++text;
    return text;
}

zet::String_T<wchar_t> CZETUtility::ParseParameterStr(const wchar_t* cmdline, const wchar_t* name,
                                                      const wchar_t* defaultValue)
{
    if (!name)
        return defaultValue;
    int numargs = 0;
    int numchars = 0;
    parse_cmdline(cmdline, nullptr, nullptr, &numargs, &numchars);
    // One block: the pointers, then the units.
    const size_t pointers = static_cast<size_t>(numargs) * sizeof(wchar_t*);
    const size_t units = static_cast<size_t>(numchars) * sizeof(wchar_t);
    const std::unique_ptr<std::byte[]> block(new (std::nothrow) std::byte[pointers + units]);
    if (!block)
        return defaultValue;
    wchar_t** argv = reinterpret_cast<wchar_t**>(block.get());
    parse_cmdline(cmdline, argv, reinterpret_cast<wchar_t*>(block.get() + pointers), &numargs, &numchars);
    --numargs;
    for (int i = 0; i < numargs; ++i)
        if (const wchar_t* value = valueOf(argv[i], name))
            return value;
    return defaultValue;
}

int CZETUtility::ParseParameterInt(const wchar_t* cmdline, const wchar_t* name, int defaultValue)
{
    const WideText value = ParseParameterStr(cmdline, name, L"");
    return value.isEmpty() ? defaultValue : toInt(value);
}

const wchar_t* CZETUtility::GetWorkPath()
{
    if (!*work_path)
    {
        WideText path = platform::getExecutablePath();
        path.truncate(kMaxSystemPath);
        int length = path.getLength();
        while (length > 0 && !isSeparator(path[length - 1]))
            --length;
        // The separator is removed too, unless it is the root.
        if (length > 0)
            path.truncate(std::max(length - 1, 1));
        copyPath(work_path, path);
        enterDirectory(path);
    }
    return work_path;
}

void CZETUtility::SetWorkPath(const wchar_t* path)
{
    const WideText taken = WideText(path).getSubString(0, kMaxGivenPath);
    if (enterDirectory(taken))
        copyPath(work_path, taken);
}

const wchar_t* CZETUtility::GetTempPathW()
{
    return tempFile ? tempPath : SetTempPath(nullptr);
}

const wchar_t* CZETUtility::SetTempPath(const wchar_t* path)
{
    if (path && openTempFile(WideText(path).getSubString(0, kMaxGivenPath)))
        return tempPath;
    if (openTempFile(WideText(GetWorkPath()).getSubString(0, kMaxTempWorkPath) + L"/tmp"))
        return tempPath;
    const WideText system = platform::getTempDirectory();
    // A longer path is ignored: truncated, it would be another directory.
    copyPath(tempPath, system.getLength() <= kMaxSystemPath ? system : WideText());
    return tempPath;
}

void CZETUtility::DeleteTempFile()
{
    if (tempFile)
    {
        std::fclose(tempFile);
        tempFile = nullptr;
        if (openFileProcess == platform::getProcessId() && !platform::deleteFile(openFilePath))
            platform::deleteFile(openFilePath);
    }
    initTempFile = false;
}

zet::String_T<char> CZETUtility::GetMD5(const zet::String_T<char>& text)
{
    std::array<unsigned char, 16> digest{};
    if (!platform::hashMD5(text.getBuffer(), static_cast<size_t>(text.getLength()), digest))
        return zet::String_T<char>();
    static constexpr char kDigits[] = "0123456789abcdef";
    zet::String_T<char> digits;
    char* out = digits.resizeForOverwrite(2 * static_cast<int>(digest.size()));
    for (const unsigned char byte : digest)
    {
        *out++ = kDigits[byte >> 4];
        *out++ = kDigits[byte & 15];
    }
    return digits;
}

zet::String_T<char> CZETUtility::GetHMACSHA1(const zet::String_T<char>& key, const zet::String_T<char>& text)
{
    std::array<unsigned char, 20> digest{};
    if (!platform::hashHMACSHA1(key.getBuffer(), static_cast<size_t>(key.getLength()), text.getBuffer(),
                                static_cast<size_t>(text.getLength()), digest))
        return zet::String_T<char>();
    const auto end = std::find(digest.begin(), digest.end(), 0);
    return toBase64(digest.data(), static_cast<size_t>(end - digest.begin()));
}
