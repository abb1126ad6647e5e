#include "framework/platform/hash.h"

#include <gnutls/crypto.h>

namespace zet::platform
{

bool hashMD5(const void* data, size_t size, std::array<unsigned char, 16>& digest)
{
    return gnutls_hash_fast(GNUTLS_DIG_MD5, data, size, digest.data()) == 0;
}

bool hashHMACSHA1(const void* key, size_t keySize, const void* data, size_t size, std::array<unsigned char, 20>& digest)
{
    return gnutls_hmac_fast(GNUTLS_MAC_SHA1, key, keySize, data, size, digest.data()) == 0;
}

} // namespace zet::platform
