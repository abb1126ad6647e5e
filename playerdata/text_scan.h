// Reads the text forms of player data: consecutive records of fields, each ended by a terminator.
//
// The fields follow C's scanning functions, with defined behaviour in all cases: a text that is too long fails, a
// number beyond 32 bits keeps its low 32 bits, a zero unit ends the record. Only the resulting texts are copied, so a
// load is linear in its input.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

#include <initializer_list>
#include <string_view>

// Reads the fields of one record. After a failure the position is unspecified, and the record must not be read further.
class COMMONGROUND_API TextScanner
{
public:
    // At the start of a record, which must outlive this object.
    explicit TextScanner(std::wstring_view record) : m_Left(record.substr(0, record.find(L'\0'))) {}

    // Removes the first record from a text and returns it without its terminator. False if there is no terminator; the
    // rest of the text is not a record then.
    static bool takeRecord(std::wstring_view& text, wchar_t terminator, std::wstring_view& record);

    // "%d": white space (blank, \t, \n, \v, \f, \r), an optional sign, digits. On failure the number does not change.
    bool takeInt(int& number);
    // "%d" for each, with this unit between them. Returns how many were read; the others do not change.
    int takeInts(wchar_t between, std::initializer_list<int*> numbers);
    // "%[^end]": one unit or more up to end or to the end of the record. On failure, also if it would be more than most
    // units, the text does not change.
    bool takeText(wchar_t end, int most, zet::String_T<wchar_t>& text);
    // Exactly this unit.
    bool takeUnit(wchar_t unit);

private:
    std::wstring_view m_Left;
};
