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
    // Asked once: the place stays, also where the file is replaced under a running process.
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
