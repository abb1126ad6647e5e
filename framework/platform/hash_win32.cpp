#include "framework/platform/hash.h"

#include <limits>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <bcrypt.h>

namespace zet::platform
{

namespace
{

// An algorithm of the system's provider, open during the object's lifetime.
class Algorithm
{
public:
    Algorithm(const wchar_t* name, ULONG flags)
    {
        if (BCryptOpenAlgorithmProvider(&m_Handle, name, nullptr, flags) < 0)
            m_Handle = nullptr;
    }
    ~Algorithm()
    {
        if (m_Handle)
            BCryptCloseAlgorithmProvider(m_Handle, 0);
    }
    Algorithm(const Algorithm&) = delete;
    Algorithm& operator=(const Algorithm&) = delete;
    BCRYPT_ALG_HANDLE get() const { return m_Handle; }

private:
    BCRYPT_ALG_HANDLE m_Handle = nullptr;
};

// The provider takes its input by a pointer to non-const, but does not change it.
PUCHAR bytesOf(const void* data)
{
    return static_cast<PUCHAR>(const_cast<void*>(data));
}

bool digest(const Algorithm& algorithm, const void* key, size_t keySize, const void* data, size_t size, PUCHAR out,
            size_t outSize)
{
    if (!algorithm.get() || keySize > std::numeric_limits<ULONG>::max())
        return false;
    BCRYPT_HASH_HANDLE hash = nullptr;
    if (BCryptCreateHash(algorithm.get(), &hash, nullptr, 0, bytesOf(key), static_cast<ULONG>(keySize), 0) < 0)
        return false;
    // The provider's sizes have 32 bits; a longer text is passed in pieces.
    constexpr size_t kMost = size_t{1} << 30;
    const unsigned char* from = static_cast<const unsigned char*>(data);
    bool isGood = true;
    while (isGood && size > 0)
    {
        const size_t piece = size < kMost ? size : kMost;
        isGood = BCryptHashData(hash, bytesOf(from), static_cast<ULONG>(piece), 0) >= 0;
        from += piece;
        size -= piece;
    }
    isGood = isGood && BCryptFinishHash(hash, out, static_cast<ULONG>(outSize), 0) >= 0;
    BCryptDestroyHash(hash);
    return isGood;
}

} // namespace

bool hashMD5(const void* data, size_t size, std::array<unsigned char, 16>& out)
{
    const Algorithm algorithm(BCRYPT_MD5_ALGORITHM, 0);
    return digest(algorithm, nullptr, 0, data, size, out.data(), out.size());
}

bool hashHMACSHA1(const void* key, size_t keySize, const void* data, size_t size, std::array<unsigned char, 20>& out)
{
    const Algorithm algorithm(BCRYPT_SHA1_ALGORITHM, BCRYPT_ALG_HANDLE_HMAC_FLAG);
    return digest(algorithm, key, keySize, data, size, out.data(), out.size());
}

} // namespace zet::platform
