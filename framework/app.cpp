#include "framework/app.h"

#include "framework/platform/platform.h"

namespace zet
{

namespace
{

String_T<wchar_t> findAppPath()
{
    const String_T<wchar_t> path = platform::getExecutablePath();
    int length = path.getLength();
    while (length > 0 && path[length - 1] != L'/')
        --length;
    return length > 0 ? path.getSubString(0, length) : String_T<wchar_t>(L"./");
}

} // namespace

String_T<wchar_t> getAppPath()
{
    // Queried once: the directory must not change if the file is replaced while the process runs.
    static const String_T<wchar_t> path = findAppPath();
    return path;
}

String_T<wchar_t> getLastErrorString()
{
    return platform::getErrorText(platform::getLastError());
}

String_T<wchar_t> getErrorString(int error)
{
    return platform::getErrorText(error);
}

} // namespace zet
