// Files of IPv4 rules: an address and a mask a line, such as "192.168.0.0 255.255.0.0".
//
//   line  up to 1,023 bytes, white space at both ends ignored; a comment if it starts with '#'
//   rule  address, white space, mask; each four decimal numbers with points; the rest is ignored
//
// Any other line is skipped silently.
#pragma once

#include "framework/export.h"

#include <functional>

// A network: an address is in it if it equals m_Address in all bits of m_Mask.
struct AddressRule
{
    // First number first.
    unsigned char m_Address[4];
    unsigned char m_Mask[4];
};

// False if the line is not a rule; rule is undefined then. A number above 255 is cut to its low byte.
COMMONGROUND_API bool ParseAddressRule(const char* line, AddressRule& rule);
// Calls take for each rule of a file in order. False if the file does not open; the operating system's error is still
// set.
COMMONGROUND_API bool ReadAddressFile(const wchar_t* path, const std::function<void(const AddressRule&)>& take);
