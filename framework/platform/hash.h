// Digests by the platform's own provider: GnuTLS, Nettle where TLS is left out, or the system's where it has one.
#pragma once

#include "framework/platform/export.h"

#include <array>
#include <cstddef>

namespace zet::platform
{

// Each returns false where the provider refuses; what the digest holds then is undefined.
COMMONGROUND_API bool hashMD5(const void* data, size_t size, std::array<unsigned char, 16>& digest);
COMMONGROUND_API bool hashHMACSHA1(const void* key, size_t keySize, const void* data, size_t size,
                                   std::array<unsigned char, 20>& digest);

} // namespace zet::platform
