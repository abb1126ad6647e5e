// The exception of the stream layer for a short read or write. Nothing else in the library throws it, and it never
// crosses a command boundary.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

#include <exception>

namespace zet
{

// A short read or write, with the place in the source that found it.
class COMMONGROUND_API Exception : public std::exception
{
public:
    // Copies the text. The file name is not copied and must outlive the object, as __FILE__ does.
    Exception(const wchar_t* text, const char* file, int line);
    const char* what() const noexcept override { return m_What; }
    // The text passed to the constructor; what() is the same in UTF-8.
    const String_T<wchar_t>& getText() const { return m_Text; }
    // Logs the text with file and line as an error.
    void report() const;

private:
    String_T<wchar_t> m_Text;
    String_T<char> m_What;
    const char* m_File;
    int m_Line;
};

} // namespace zet
