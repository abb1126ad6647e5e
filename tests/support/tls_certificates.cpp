#include "tests/support/tls_certificates.h"

#include "framework/platform/platform.h"
#include "framework/string_helper.h"

#include <arpa/inet.h>
#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

#include <cstdio>
#include <stdexcept>

namespace test
{

namespace
{

void must(int code)
{
    if (code < 0)
        throw std::runtime_error(gnutls_strerror(code));
}

std::string textOf(gnutls_datum_t data)
{
    const std::string text(reinterpret_cast<const char*>(data.data), data.size);
    gnutls_free(data.data);
    return text;
}

gnutls_x509_privkey_t makeKey(unsigned int rsaBits = 0)
{
    gnutls_x509_privkey_t key;
    must(gnutls_x509_privkey_init(&key));
    if (rsaBits > 0)
        must(gnutls_x509_privkey_generate(key, GNUTLS_PK_RSA, rsaBits, 0));
    else
        must(gnutls_x509_privkey_generate(key, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0));
    return key;
}

std::string pemOf(gnutls_x509_privkey_t key)
{
    gnutls_datum_t data;
    must(gnutls_x509_privkey_export2_pkcs8(key, GNUTLS_X509_FMT_PEM, nullptr, GNUTLS_PKCS_PLAIN, &data));
    return textOf(data);
}

gnutls_x509_crt_t makeCertificate(const std::string& name, gnutls_x509_privkey_t key, std::time_t from, std::time_t to)
{
    gnutls_x509_crt_t certificate;
    must(gnutls_x509_crt_init(&certificate));
    must(gnutls_x509_crt_set_version(certificate, 3));
    unsigned char serial[8];
    must(gnutls_rnd(GNUTLS_RND_NONCE, serial, sizeof serial));
    serial[0] &= 0x7F;
    serial[0] |= 1;
    must(gnutls_x509_crt_set_serial(certificate, serial, sizeof serial));
    if (!name.empty())
        must(gnutls_x509_crt_set_dn_by_oid(certificate, GNUTLS_OID_X520_COMMON_NAME, 0, name.data(),
                                           static_cast<unsigned int>(name.size())));
    must(gnutls_x509_crt_set_activation_time(certificate, std::time(nullptr) + from));
    must(gnutls_x509_crt_set_expiration_time(certificate, std::time(nullptr) + to));
    must(gnutls_x509_crt_set_key(certificate, key));
    return certificate;
}

std::string pemOf(gnutls_x509_crt_t certificate)
{
    gnutls_datum_t data;
    must(gnutls_x509_crt_export2(certificate, GNUTLS_X509_FMT_PEM, &data));
    return textOf(data);
}

} // namespace

Authority::Authority(const std::string& name) : m_Key(makeKey())
{
    m_Certificate = makeCertificate(name, m_Key, -3600 * 24 * 365, 3600 * 24);
    must(gnutls_x509_crt_set_basic_constraints(m_Certificate, 1, -1));
    must(gnutls_x509_crt_set_key_usage(m_Certificate, GNUTLS_KEY_KEY_CERT_SIGN | GNUTLS_KEY_CRL_SIGN));
    must(gnutls_x509_crt_sign2(m_Certificate, m_Certificate, m_Key, GNUTLS_DIG_SHA256, 0));
    m_Pem = pemOf(m_Certificate);
}

Authority::~Authority()
{
    gnutls_x509_crt_deinit(m_Certificate);
    gnutls_x509_privkey_deinit(m_Key);
}

Certificate Authority::issue(const CertificateWish& wish) const
{
    const gnutls_x509_privkey_t key = makeKey(wish.m_RsaBits);
    const gnutls_x509_crt_t certificate = makeCertificate(wish.m_CommonName, key, wish.m_From, wish.m_To);
    for (const std::string& host : wish.m_Hosts)
    {
        unsigned char address[sizeof(in6_addr)];
        const bool isV6 = inet_pton(AF_INET6, host.c_str(), address) == 1;
        if (isV6 || inet_pton(AF_INET, host.c_str(), address) == 1)
            must(gnutls_x509_crt_set_subject_alt_name(certificate, GNUTLS_SAN_IPADDRESS, address, isV6 ? 16 : 4,
                                                      GNUTLS_FSAN_APPEND));
        else
            must(gnutls_x509_crt_set_subject_alt_name(certificate, GNUTLS_SAN_DNSNAME, host.data(),
                                                      static_cast<unsigned int>(host.size()), GNUTLS_FSAN_APPEND));
    }
    must(gnutls_x509_crt_set_basic_constraints(certificate, 0, -1));
    must(gnutls_x509_crt_set_key_usage(certificate, GNUTLS_KEY_DIGITAL_SIGNATURE));
    if (wish.m_IsForServers)
        must(gnutls_x509_crt_set_key_purpose_oid(certificate, GNUTLS_KP_TLS_WWW_SERVER, 0));
    if (wish.m_IsForClients)
        must(gnutls_x509_crt_set_key_purpose_oid(certificate, GNUTLS_KP_TLS_WWW_CLIENT, 0));
    must(gnutls_x509_crt_sign2(certificate, m_Certificate, m_Key, GNUTLS_DIG_SHA256, 0));
    Certificate made;
    made.m_Chain = pemOf(certificate);
    made.m_Key = pemOf(key);
    gnutls_x509_crt_deinit(certificate);
    gnutls_x509_privkey_deinit(key);
    return made;
}

std::string Authority::revoke(const Certificate& certificate) const
{
    gnutls_x509_crt_t revoked;
    must(gnutls_x509_crt_init(&revoked));
    const gnutls_datum_t pem = {reinterpret_cast<unsigned char*>(const_cast<char*>(certificate.m_Chain.data())),
                                static_cast<unsigned int>(certificate.m_Chain.size())};
    must(gnutls_x509_crt_import(revoked, &pem, GNUTLS_X509_FMT_PEM));
    gnutls_x509_crl_t list;
    must(gnutls_x509_crl_init(&list));
    must(gnutls_x509_crl_set_version(list, 2));
    must(gnutls_x509_crl_set_crt(list, revoked, std::time(nullptr) - 60));
    must(gnutls_x509_crl_set_this_update(list, std::time(nullptr) - 60));
    must(gnutls_x509_crl_set_next_update(list, std::time(nullptr) + 3600));
    must(gnutls_x509_crl_sign2(list, m_Certificate, m_Key, GNUTLS_DIG_SHA256, 0));
    gnutls_datum_t data;
    must(gnutls_x509_crl_export2(list, GNUTLS_X509_FMT_PEM, &data));
    gnutls_x509_crl_deinit(list);
    gnutls_x509_crt_deinit(revoked);
    return textOf(data);
}

std::string Authority::key() const
{
    return pemOf(m_Key);
}

TextFile::TextFile(const std::string& text) : m_Path(zet::platform::createTempFile(zet::platform::getTempDirectory()))
{
    write(text);
}

void TextFile::write(const std::string& text) const
{
    std::FILE* const file = zet::platform::openFile(m_Path, "wb");
    const bool isWritten = file && std::fwrite(text.data(), 1, text.size(), file) == text.size();
    if (!file || std::fclose(file) != 0 || !isWritten)
        throw std::runtime_error("no temporary file");
}

TextFile::~TextFile()
{
    zet::platform::deleteFile(m_Path);
}

std::string TextFile::path() const
{
    return zet::StringHelper::wideToUtf8(m_Path).getBuffer();
}

} // namespace test
