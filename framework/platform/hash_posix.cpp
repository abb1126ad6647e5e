// Nettle is the small library that GnuTLS itself uses for digests; the library needs GnuTLS for TLS only.
#include "framework/platform/hash.h"

#include <nettle/hmac.h>
#include <nettle/md5.h>

namespace zet::platform
{

bool hashMD5(const void* data, size_t size, std::array<unsigned char, 16>& digest)
{
    md5_ctx context;
    md5_init(&context);
    md5_update(&context, size, static_cast<const uint8_t*>(data));
    md5_digest(&context, digest.size(), digest.data());
    return true;
}

bool hashHMACSHA1(const void* key, size_t keySize, const void* data, size_t size, std::array<unsigned char, 20>& digest)
{
    hmac_sha1_ctx context;
    hmac_sha1_set_key(&context, keySize, static_cast<const uint8_t*>(key));
    hmac_sha1_update(&context, size, static_cast<const uint8_t*>(data));
    hmac_sha1_digest(&context, digest.size(), digest.data());
    return true;
}

} // namespace zet::platform
