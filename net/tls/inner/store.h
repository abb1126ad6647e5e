// The private part of a TLS context, as the context sees it.
#pragma once

namespace zet::inner
{

// THREADS: those of the context.
class TlsStore
{
public:
    enum Kind
    {
        kCertificate,
        kTrust,
        kSystemTrust,
        kRevocations
    };

    TlsStore() = default;
    virtual ~TlsStore() = default;
    TlsStore(const TlsStore&) = delete;
    TlsStore& operator=(const TlsStore&) = delete;

    // False if GnuTLS could not be started: then every operation fails.
    virtual bool isReady() const = 0;
    // Whether a connection or a port uses the context; from then on only a reload changes it.
    virtual bool isFixed() const = 0;
    virtual bool hasCertificate() const = 0;
    virtual bool hasTrust() const = 0;

    // Loads one more source, texts in PEM or the files with them; only a certificate has a key. False, with a log line
    // and nothing changed, if it is not valid. Not while the context is fixed.
    virtual bool add(Kind kind, const char* text, const char* key) = 0;
    virtual bool add(Kind kind, const wchar_t* file, const wchar_t* keyFile) = 0;
    // Loads all sources again; the other two load this pair instead of all pairs. False, with a log line and nothing
    // changed, if one of them is not valid.
    virtual bool reload() = 0;
    virtual bool reload(const char* certificates, const char* key) = 0;
    virtual bool reload(const wchar_t* certificates, const wchar_t* key) = 0;
};

} // namespace zet::inner
