// Certificates generated at run time.
#pragma once

#include "framework/string.h"

#include <ctime>
#include <memory>
#include <string>
#include <vector>

struct gnutls_x509_crt_int;
struct gnutls_x509_privkey_int;

namespace test
{

// Both PEM.
struct Certificate
{
    std::string m_Chain;
    std::string m_Key;
};

struct CertificateWish
{
    std::string m_CommonName;
    // Host names or addresses of the certificate.
    std::vector<std::string> m_Hosts;
    // Relative to now, in seconds.
    std::time_t m_From = -3600;
    std::time_t m_To = 24 * 3600;
    bool m_IsForServers = true;
    bool m_IsForClients = true;
    // Bits of an RSA key; 0 for a P-256 key.
    unsigned int m_RsaBits = 0;
};

// Signs certificates with its own key.
class Authority
{
public:
    explicit Authority(const std::string& name);
    ~Authority();
    Authority(const Authority&) = delete;
    Authority& operator=(const Authority&) = delete;

    // The certificate of the authority.
    const std::string& pem() const { return m_Pem; }
    Certificate issue(const CertificateWish& wish) const;
    // A revocation list with this certificate; PEM.
    std::string revoke(const Certificate& certificate) const;
    // The private key, for other programs that sign in its name; PEM.
    std::string key() const;

private:
    gnutls_x509_privkey_int* m_Key = nullptr;
    gnutls_x509_crt_int* m_Certificate = nullptr;
    std::string m_Pem;
};

// A file in the system's temporary directory, deleted with the object.
class TextFile
{
public:
    explicit TextFile(const std::string& text);
    ~TextFile();
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    // Replaces the text.
    void write(const std::string& text) const;
    std::string path() const;
    std::wstring widePath() const { return m_Path.getBuffer(); }

private:
    zet::String_T<wchar_t> m_Path;
};

} // namespace test
