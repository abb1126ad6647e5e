#include "framework/exception.h"

#include "framework/log.h"
#include "framework/string_helper.h"

namespace zet
{

Exception::Exception(const wchar_t* text, const char* file, int line)
    : m_Text(text), m_What(StringHelper::wideToUtf8(text)), m_File(file), m_Line(line)
{
}

void Exception::report() const
{
    Log::error(L"%s (%s:%d)", m_Text.getBuffer(), StringHelper::utf8ToWide(m_File).getBuffer(), m_Line);
}

} // namespace zet
