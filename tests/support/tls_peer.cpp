#include "tests/support/tls_peer.h"

#include <gnutls/gnutls.h>

#include <algorithm>
#include <cerrno>
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

gnutls_datum_t datumOf(const std::string& text)
{
    return {reinterpret_cast<unsigned char*>(const_cast<char*>(text.data())), static_cast<unsigned int>(text.size())};
}

} // namespace

struct TlsPeer::Calls
{
    static ssize_t push(gnutls_transport_ptr_t self, const void* data, size_t size)
    {
        TlsPeer& peer = *static_cast<TlsPeer*>(self);
        if (peer.m_Stream.send(data, static_cast<int>(size)) == static_cast<int>(size))
            return static_cast<ssize_t>(size);
        gnutls_transport_set_errno(peer.m_Session, EPIPE);
        return -1;
    }
    static ssize_t pull(gnutls_transport_ptr_t self, void* data, size_t size)
    {
        TlsPeer& peer = *static_cast<TlsPeer*>(self);
        // GnuTLS reads the header of a record, and then the rest.
        const int got = peer.m_Stream.read(data, static_cast<int>(size));
        if (got > 0)
        {
            peer.m_LargestRecord = std::max(peer.m_LargestRecord, static_cast<size_t>(got));
            return got;
        }
        if (peer.m_Stream.getConnectionState() != zet::TcpConnection::kEstablished &&
            peer.m_Stream.getConnectionState() != zet::TcpConnection::kConnecting)
            return 0;
        gnutls_transport_set_errno(peer.m_Session, EAGAIN);
        return -1;
    }
};

TlsPeer::TlsPeer(zet::TcpStream& stream, const TlsPeerWish& wish) : m_Stream(stream)
{
    must(gnutls_certificate_allocate_credentials(&m_Credentials));
    if (!wish.m_Certificate.m_Chain.empty())
    {
        const gnutls_datum_t chain = datumOf(wish.m_Certificate.m_Chain);
        const gnutls_datum_t key = datumOf(wish.m_Certificate.m_Key);
        must(gnutls_certificate_set_x509_key_mem(m_Credentials, &chain, &key, GNUTLS_X509_FMT_PEM));
    }
    must(gnutls_init(&m_Session, (wish.m_IsClient ? GNUTLS_CLIENT : GNUTLS_SERVER) |
                                     static_cast<unsigned int>(GNUTLS_NONBLOCK) |
                                     static_cast<unsigned int>(GNUTLS_FORCE_CLIENT_CERT)));
    must(gnutls_priority_set_direct(m_Session, wish.m_Priority.c_str(), nullptr));
    must(gnutls_credentials_set(m_Session, GNUTLS_CRD_CERTIFICATE, m_Credentials));
    if (wish.m_RecordSize > 0)
        must(static_cast<int>(gnutls_record_set_max_size(m_Session, wish.m_RecordSize)));
    if (wish.m_Asks)
        gnutls_certificate_server_set_request(m_Session, GNUTLS_CERT_REQUEST);
    gnutls_handshake_set_timeout(m_Session, 0);
    gnutls_transport_set_ptr(m_Session, this);
    gnutls_transport_set_push_function(m_Session, Calls::push);
    gnutls_transport_set_pull_function(m_Session, Calls::pull);
}

TlsPeer::~TlsPeer()
{
    gnutls_deinit(m_Session);
    gnutls_certificate_free_credentials(m_Credentials);
}

void TlsPeer::note(long code)
{
    if (code == GNUTLS_E_FATAL_ALERT_RECEIVED && m_Alert < 0)
        m_Alert = gnutls_alert_get(m_Session);
}

bool TlsPeer::shakeHands()
{
    if (m_IsDone || m_Alert >= 0)
        return m_IsDone;
    int code;
    do
        code = gnutls_handshake(m_Session);
    while (code != GNUTLS_E_SUCCESS && !gnutls_error_is_fatal(code) && m_Stream.available() > 0);
    note(code);
    m_IsDone = code == GNUTLS_E_SUCCESS;
    return m_IsDone;
}

bool TlsPeer::send(const std::vector<unsigned char>& bytes, size_t recordSize)
{
    for (size_t at = 0; at < bytes.size();)
    {
        const ssize_t taken = gnutls_record_send(m_Session, bytes.data() + at, std::min(recordSize, bytes.size() - at));
        if (taken <= 0)
            return false;
        at += static_cast<size_t>(taken);
    }
    return true;
}

const std::vector<unsigned char>& TlsPeer::receive()
{
    unsigned char piece[16384];
    for (;;)
    {
        const ssize_t got = gnutls_record_recv(m_Session, piece, sizeof piece);
        if (got > 0)
        {
            m_Received.insert(m_Received.end(), piece, piece + got);
            continue;
        }
        note(got);
        if (got == 0 || gnutls_error_is_fatal(static_cast<int>(got)) || m_Stream.available() == 0)
            return m_Received;
    }
}

std::string TlsPeer::cipher() const
{
    return gnutls_cipher_get_name(gnutls_cipher_get(m_Session));
}

} // namespace test
