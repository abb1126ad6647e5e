// Digests by Nettle, or by the operating system where it has a provider.
#pragma once

#include "framework/export.h"

#include <array>
#include <cstddef>

namespace zet::platform
{

// Each returns false if the provider refuses; the digest is undefined then.
COMMONGROUND_API bool hashMD5(const void* data, size_t size, std::array<unsigned char, 16>& digest);
COMMONGROUND_API bool hashHMACSHA1(const void* key, size_t keySize, const void* data, size_t size,
                                   std::array<unsigned char, 20>& digest);

} // namespace zet::platform
