// What a host has given a TLS context, and GnuTLS's form of it.
#pragma once

#include "framework/string.h"
#include "net/tls/inner/store.h"

#include <gnutls/gnutls.h>

#include <string>

namespace zet::inner
{

// Certificates, authorities, and the key of a server's tickets. Sessions use it from several threads, so it does not
// change while one exists; GnuTLS does not copy it, so it must outlive them.
struct TlsCredentials
{
    TlsCredentials();
    ~TlsCredentials();
    TlsCredentials(const TlsCredentials&) = delete;
    TlsCredentials& operator=(const TlsCredentials&) = delete;

    // Whether each certificate of this side is within its time of validity. False with a log line.
    bool isCurrent() const;

    gnutls_certificate_credentials_t m_Handle = nullptr;
    gnutls_datum_t m_TicketKey{nullptr, 0};
    // GnuTLS's code for what failed; 0 for nothing.
    int m_Fault = 0;
    bool m_HasCertificate = false;
    bool m_HasTrust = false;
};

// Texts in PEM, or the files with them.
struct TlsSource
{
    using Kind = TlsStore::Kind;

    TlsSource(Kind kind, const char* text, const char* key);
    TlsSource(Kind kind, const wchar_t* file, const wchar_t* keyFile);
    TlsSource(TlsSource&&) = default;
    TlsSource& operator=(TlsSource&&) = default;
    // Overwrites a key.
    ~TlsSource();

    // Reads the files. False, with a log line, if that fails or GnuTLS refuses the texts.
    bool load(TlsCredentials& credentials) const;

    Kind m_Kind;
    bool m_IsFile;
    String_T<wchar_t> m_File;
    String_T<wchar_t> m_KeyFile;
    std::string m_Text;
    std::string m_Key;

private:
    bool loadTexts(TlsCredentials& credentials, const std::string& text, const std::string& key) const;
};

} // namespace zet::inner
