// Files of IPv4 rules: an address and a mask a line, such as "192.168.0.0 255.255.0.0".
//
//   line  up to 1,023 bytes, white space at both ends ignored; '#' in front makes it a comment
//   rule  address, white space, mask; each four decimal numbers with points; what follows is ignored
//
// A line that is neither empty, a comment nor a rule is passed over without a word.
#pragma once

#include "framework/platform/export.h"

#include <functional>

struct AddressRule
{
    // First number first.
    unsigned char m_Address[4];
    unsigned char m_Mask[4];
};

// False where the line holds no rule; the rule is undefined then. Of a number above 255 the low byte counts.
COMMONGROUND_API bool ParseAddressRule(const char* line, AddressRule& rule);
// Calls take for each rule of a file in order. False, with the operating system's error still set, where the file does
// not open.
COMMONGROUND_API bool ReadAddressFile(const wchar_t* path, const std::function<void(const AddressRule&)>& take);
