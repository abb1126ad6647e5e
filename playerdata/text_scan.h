// Reads the text forms of player data: a sequence of records, each ended by a terminator, with fields in between.
//
// The fields follow C's scanning functions, whose undefined corners are settled here: a text that does not fit its
// place fails, a number beyond 32 bits keeps its low 32 bits, a zero unit ends the record. Nothing is copied but the
// texts that are taken, so a load is linear in what it reads.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

#include <initializer_list>
#include <string_view>

// Goes through the fields of one record. After a failure the position in the record is undefined.
class COMMONGROUND_API TextScanner
{
public:
    explicit TextScanner(std::wstring_view record) : m_Left(record.substr(0, record.find(L'\0'))) {}

    // Takes the first record off a text, without its terminator. False where no terminator is left; the rest of
    // the text is then not a record.
    static bool takeRecord(std::wstring_view& text, wchar_t terminator, std::wstring_view& record);

    // "%d": white space (blank, \t, \n, \v, \f, \r), a sign or none, digits. On failure the number stays.
    bool takeInt(int& number);
    // "%d" for each, with this unit between them. Returns how many there are; the rest stay.
    int takeInts(wchar_t between, std::initializer_list<int*> numbers);
    // "%[^end]": one unit or more up to end or to the end of the record. On failure, also when it would be more than
    // most units, the text stays.
    bool takeText(wchar_t end, int most, zet::String_T<wchar_t>& text);
    // Takes the next unit, which must be this one.
    bool takeUnit(wchar_t unit);

private:
    std::wstring_view m_Left;
};
