#include "tests/support/quic_peer.h"

#include "framework/time.h"
#include "tests/support/tls_certificates.h"

#include <gnutls/crypto.h>
#include <netinet/in.h>
#include <ngtcp2/ngtcp2_crypto_gnutls.h>

#include <stdexcept>

namespace test
{

namespace
{

// Defined again independently, so that a change of the library's value fails.
constexpr size_t kMostBytes = 2048;
constexpr char kProtocol[] = "commonground/1";
constexpr size_t kPlaces = 4;

ngtcp2_tstamp now()
{
    return NGTCP2_SECONDS + zet::getTimeTick() * NGTCP2_MILLISECONDS;
}

// Two ports of the loopback, with the addresses that ngtcp2 needs.
struct Path
{
    Path(unsigned short local, unsigned short remote) : m_Local(addressOf(local)), m_Remote(addressOf(remote))
    {
        m_Path.local = {reinterpret_cast<ngtcp2_sockaddr*>(&m_Local), sizeof m_Local};
        m_Path.remote = {reinterpret_cast<ngtcp2_sockaddr*>(&m_Remote), sizeof m_Remote};
    }
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;

    static sockaddr_in addressOf(unsigned short port)
    {
        sockaddr_in made{};
        made.sin_family = AF_INET;
        made.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        made.sin_port = htons(port);
        return made;
    }

    sockaddr_in m_Local;
    sockaddr_in m_Remote;
    ngtcp2_path m_Path{};
};

void randomId(ngtcp2_cid& id, size_t size)
{
    id.datalen = size;
    gnutls_rnd(GNUTLS_RND_NONCE, id.data, size);
}

std::string textOf(const ngtcp2_cid& id)
{
    return {reinterpret_cast<const char*>(id.data), id.datalen};
}

} // namespace

struct QuicPeer::Calls
{
    static QuicPeer& peer(void* user) { return *static_cast<QuicPeer*>(user); }
    static ngtcp2_callbacks all()
    {
        ngtcp2_callbacks calls{};
        calls.client_initial = ngtcp2_crypto_client_initial_cb;
        calls.recv_client_initial = ngtcp2_crypto_recv_client_initial_cb;
        calls.recv_crypto_data = ngtcp2_crypto_recv_crypto_data_cb;
        calls.encrypt = encrypt;
        calls.decrypt = ngtcp2_crypto_decrypt_cb;
        calls.hp_mask = ngtcp2_crypto_hp_mask_cb;
        calls.recv_retry = ngtcp2_crypto_recv_retry_cb;
        calls.update_key = ngtcp2_crypto_update_key_cb;
        calls.delete_crypto_aead_ctx = ngtcp2_crypto_delete_crypto_aead_ctx_cb;
        calls.delete_crypto_cipher_ctx = ngtcp2_crypto_delete_crypto_cipher_ctx_cb;
        calls.get_path_challenge_data = ngtcp2_crypto_get_path_challenge_data_cb;
        calls.version_negotiation = ngtcp2_crypto_version_negotiation_cb;
        calls.rand = [](uint8_t* data, size_t size, const ngtcp2_rand_ctx*)
        { gnutls_rnd(GNUTLS_RND_NONCE, data, size); };
        calls.get_new_connection_id = [](ngtcp2_conn*, ngtcp2_cid* id, uint8_t* token, size_t size, void*)
        {
            randomId(*id, size);
            return gnutls_rnd(GNUTLS_RND_NONCE, token, NGTCP2_STATELESS_RESET_TOKENLEN);
        };
        calls.remove_connection_id = [](ngtcp2_conn*, const ngtcp2_cid*, void* user)
        {
            ++peer(user).m_ReturnedIds;
            return 0;
        };
        calls.dcid_status = [](ngtcp2_conn*, int type, uint64_t, const ngtcp2_cid* id, const uint8_t*, void* user)
        {
            if (type == NGTCP2_CONNECTION_ID_STATUS_TYPE_DEACTIVATE)
                peer(user).m_RetiredIds.push_back(*id);
            return 0;
        };
        calls.handshake_confirmed = [](ngtcp2_conn*, void* user)
        {
            peer(user).m_IsUp = true;
            return 0;
        };
        calls.handshake_completed = [](ngtcp2_conn*, void* user)
        {
            QuicPeer& self = peer(user);
            self.m_IsUp = self.m_IsServer || self.m_Wish.m_IsEager;
            char name[256];
            size_t size = sizeof name;
            unsigned int type = 0;
            if (self.m_IsServer && gnutls_server_name_get(self.m_Session, name, &size, &type, 0) >= 0)
                self.m_ServerName = name;
            return 0;
        };
        calls.stream_open = [](ngtcp2_conn*, int64_t stream, void* user)
        {
            peer(user).m_Stream = stream;
            return 0;
        };
        calls.acked_stream_data_offset = [](ngtcp2_conn*, int64_t, uint64_t, uint64_t size, void* user, void*)
        {
            peer(user).confirm(static_cast<size_t>(size));
            return 0;
        };
        calls.recv_stream_data = [](ngtcp2_conn* connection, uint32_t, int64_t stream, uint64_t, const uint8_t* data,
                                    size_t size, void* user, void*)
        {
            peer(user).m_Received.append(reinterpret_cast<const char*>(data), size);
            ngtcp2_conn_extend_max_stream_offset(connection, stream, size);
            ngtcp2_conn_extend_max_offset(connection, size);
            return 0;
        };
        return calls;
    }

    // ngtcp2 does not pass the connection whose packet it seals.
    static thread_local QuicPeer* s_Writing;
    static int encrypt(uint8_t* out, const ngtcp2_crypto_aead* aead, const ngtcp2_crypto_aead_ctx* context,
                       const uint8_t* plain, size_t size, const uint8_t* nonce, size_t nonceSize, const uint8_t* head,
                       size_t headSize)
    {
        std::string payload(reinterpret_cast<const char*>(plain), size);
        if (s_Writing && !(head[0] & 0x80))
            s_Writing->m_IsDatagramFull = true;
        if (s_Writing && s_Writing->m_Wish.m_ChangePayload && size > 0)
            s_Writing->m_Wish.m_ChangePayload(head[0], payload);
        payload.resize(size);
        return ngtcp2_crypto_encrypt_cb(out, aead, context, reinterpret_cast<const uint8_t*>(payload.data()), size,
                                        nonce, nonceSize, head, headSize);
    }

    // The TLS side, like ngtcp2's own helper, but with parameters that can be changed or omitted.
    static QuicPeer& peer(gnutls_session_t session)
    {
        return *static_cast<QuicPeer*>(
            static_cast<ngtcp2_crypto_conn_ref*>(gnutls_session_get_ptr(session))->user_data);
    }
    static int onSecret(gnutls_session_t session, gnutls_record_encryption_level_t level, const void* rx,
                        const void* tx, size_t size)
    {
        const auto at = ngtcp2_crypto_gnutls_from_gnutls_record_encryption_level(level);
        ngtcp2_conn* const connection = peer(session).m_Connection;
        const bool isDone =
            (!rx || ngtcp2_crypto_derive_and_install_rx_key(connection, nullptr, nullptr, nullptr, at,
                                                            static_cast<const uint8_t*>(rx), size) == 0) &&
            (!tx || ngtcp2_crypto_derive_and_install_tx_key(connection, nullptr, nullptr, nullptr, at,
                                                            static_cast<const uint8_t*>(tx), size) == 0);
        return isDone ? 0 : -1;
    }
    static int onHandshake(gnutls_session_t session, gnutls_record_encryption_level_t level,
                           gnutls_handshake_description_t type, const void* data, size_t size)
    {
        if (type == GNUTLS_HANDSHAKE_CHANGE_CIPHER_SPEC)
            return 0;
        const auto at = ngtcp2_crypto_gnutls_from_gnutls_record_encryption_level(level);
        std::string bytes(static_cast<const char*>(data), size);
        if (type == GNUTLS_HANDSHAKE_FINISHED)
            bytes += peer(session).m_Wish.m_BehindFinished;
        return ngtcp2_conn_submit_crypto_data(peer(session).m_Connection, at,
                                              reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    static int onAlert(gnutls_session_t session, gnutls_record_encryption_level_t, gnutls_alert_level_t,
                       gnutls_alert_description_t alert)
    {
        ngtcp2_conn_set_tls_alert(peer(session).m_Connection, static_cast<uint8_t>(alert));
        return 0;
    }
    static int takeParams(gnutls_session_t session, const unsigned char* data, size_t size)
    {
        return ngtcp2_conn_decode_remote_transport_params(peer(session).m_Connection, data, size);
    }
    static int giveParams(gnutls_session_t session, gnutls_buffer_t out)
    {
        QuicPeer& self = peer(session);
        if (!self.m_Wish.m_HasParams)
            return 0;
        uint8_t bytes[512];
        const auto size = ngtcp2_conn_encode_local_transport_params(self.m_Connection, bytes, sizeof bytes);
        if (size < 0)
            return -1;
        std::string params(reinterpret_cast<const char*>(bytes), static_cast<size_t>(size));
        if (self.m_Wish.m_ChangeParams)
            self.m_Wish.m_ChangeParams(params);
        return gnutls_buffer_append_data(out, params.data(), params.size());
    }
};

thread_local QuicPeer* QuicPeer::Calls::s_Writing = nullptr;

QuicPeer::QuicPeer(unsigned short server, QuicWish wish) : m_Wish(std::move(wish)), m_Server(server)
{
    m_RetiredIds.reserve(kRetiredIds);
    addPlace();
    if (gnutls_certificate_allocate_credentials(&m_Credentials) < 0)
        throw std::runtime_error("no credentials");
    openClient();
    write();
}

QuicPeer::QuicPeer(const Certificate& certificate, QuicWish wish)
    : m_Wish(std::move(wish)), m_IsServer(true), m_Server(0)
{
    m_RetiredIds.reserve(kRetiredIds);
    addPlace();
    const auto datumOf = [](const std::string& text)
    {
        return gnutls_datum_t{reinterpret_cast<unsigned char*>(const_cast<char*>(text.data())),
                              static_cast<unsigned int>(text.size())};
    };
    const gnutls_datum_t chain = datumOf(certificate.m_Chain);
    const gnutls_datum_t key = datumOf(certificate.m_Key);
    if (gnutls_certificate_allocate_credentials(&m_Credentials) < 0 ||
        gnutls_certificate_set_x509_key_mem(m_Credentials, &chain, &key, GNUTLS_X509_FMT_PEM) < 0)
        throw std::runtime_error("no credentials");
}

void QuicPeer::openClient()
{
    const Path path(m_Places.back().m_Told, m_Server);
    ngtcp2_cid other;
    ngtcp2_cid self;
    randomId(other, 16);
    randomId(self, m_Wish.m_IdSize);
    const auto calls = Calls::all();
    ngtcp2_settings settings;
    ngtcp2_settings_default(&settings);
    settings.initial_ts = now();
    ngtcp2_transport_params params;
    ngtcp2_transport_params_default(&params);
    params.initial_max_stream_data_bidi_local = 256 * 1024;
    params.initial_max_data = 256 * 1024;
    if (ngtcp2_conn_client_new(&m_Connection, &other, &self, &path.m_Path, NGTCP2_PROTO_VER_V1, &calls, &settings,
                               &params, nullptr, this) != 0)
        throw std::runtime_error("no QUIC peer");
    openSession(GNUTLS_CLIENT);
}

bool QuicPeer::openServer(const std::string& datagram, unsigned short client)
{
    m_Server = client;
    ngtcp2_pkt_hd head;
    if (ngtcp2_accept(&head, reinterpret_cast<const uint8_t*>(datagram.data()), datagram.size()) != 0)
        return false;
    const Path path(m_Places.back().m_Told, m_Server);
    ngtcp2_cid self;
    randomId(self, m_Wish.m_IdSize);
    const auto calls = Calls::all();
    ngtcp2_settings settings;
    ngtcp2_settings_default(&settings);
    settings.initial_ts = now();
    ngtcp2_transport_params params;
    ngtcp2_transport_params_default(&params);
    params.original_dcid = head.dcid;
    params.initial_max_streams_bidi = 1;
    params.initial_max_stream_data_bidi_remote = 256 * 1024;
    params.initial_max_data = 256 * 1024;
    if (ngtcp2_conn_server_new(&m_Connection, &head.scid, &self, &path.m_Path, head.version, &calls, &settings, &params,
                               nullptr, this) != 0)
        return false;
    openSession(GNUTLS_SERVER);
    const std::string token(m_Wish.m_TokenSize, 't');
    return token.empty() || ngtcp2_conn_submit_new_token(m_Connection, reinterpret_cast<const uint8_t*>(token.data()),
                                                         token.size()) == 0;
}

void QuicPeer::openSession(unsigned int flags)
{
    const gnutls_datum_t protocol = {reinterpret_cast<unsigned char*>(const_cast<char*>(kProtocol)),
                                     sizeof kProtocol - 1};
    m_Ref = {[](ngtcp2_crypto_conn_ref* ref) { return static_cast<QuicPeer*>(ref->user_data)->m_Connection; }, this};
    if (gnutls_init(&m_Session, flags | GNUTLS_NONBLOCK | GNUTLS_NO_SIGNAL) < 0 ||
        gnutls_priority_set_direct(m_Session, m_Wish.m_Priority.c_str(), nullptr) < 0 ||
        gnutls_credentials_set(m_Session, GNUTLS_CRD_CERTIFICATE, m_Credentials) < 0 ||
        gnutls_alpn_set_protocols(m_Session, &protocol, 1, GNUTLS_ALPN_MANDATORY) < 0 ||
        gnutls_session_ext_register(m_Session, "QUIC parameters", NGTCP2_TLSEXT_QUIC_TRANSPORT_PARAMETERS_V1,
                                    GNUTLS_EXT_TLS, Calls::takeParams, Calls::giveParams, nullptr, nullptr, nullptr,
                                    GNUTLS_EXT_FLAG_TLS | GNUTLS_EXT_FLAG_CLIENT_HELLO | GNUTLS_EXT_FLAG_EE) < 0)
        throw std::runtime_error("no TLS session");
    gnutls_handshake_set_secret_function(m_Session, Calls::onSecret);
    gnutls_handshake_set_read_function(m_Session, Calls::onHandshake);
    gnutls_alert_set_read_function(m_Session, Calls::onAlert);
    gnutls_session_set_ptr(m_Session, &m_Ref);
    ngtcp2_conn_set_tls_native_handle(m_Connection, m_Session);
}

QuicPeer::~QuicPeer()
{
    if (m_Connection)
        ngtcp2_conn_del(m_Connection);
    if (m_Session)
        gnutls_deinit(m_Session);
    gnutls_certificate_free_credentials(m_Credentials);
}

uint64_t QuicPeer::getCloseCode() const
{
    ngtcp2_connection_close_error reason{};
    if (m_Connection)
        ngtcp2_conn_get_connection_close_error(m_Connection, &reason);
    return reason.error_code;
}

void QuicPeer::reset()
{
    note(ngtcp2_conn_shutdown_stream_write(m_Connection, m_Stream, 7));
}

void QuicPeer::stop()
{
    note(ngtcp2_conn_shutdown_stream_read(m_Connection, m_Stream, 7));
}

QuicPeer::Place& QuicPeer::addPlace()
{
    auto socket = std::make_unique<BareUdp>(m_Wish.m_Address);
    if (!socket->isOpen())
        throw std::runtime_error("no UDP socket");
    const unsigned short port = socket->getPort();
    m_Places.push_back({std::move(socket), port});
    if (m_Places.size() > kPlaces)
        m_Places.pop_front();
    return m_Places.back();
}

bool QuicPeer::move()
{
    const Path path(addPlace().m_Told, m_Server);
    if (ngtcp2_conn_initiate_immediate_migration(m_Connection, &path.m_Path, now()) == 0)
        return true;
    m_Places.pop_back();
    return false;
}

void QuicPeer::rebind()
{
    m_PlaceBefore = std::exchange(m_Places.back().m_Socket, std::make_unique<BareUdp>(m_Wish.m_Address));
}

void QuicPeer::rebindBack()
{
    if (m_PlaceBefore)
        std::swap(m_Places.back().m_Socket, m_PlaceBefore);
}

std::vector<std::string> QuicPeer::getRetiredIds() const
{
    std::vector<std::string> ids;
    for (const ngtcp2_cid& id : m_RetiredIds)
        ids.push_back(textOf(id));
    return ids;
}

std::string QuicPeer::getId() const
{
    return textOf(*ngtcp2_conn_get_dcid(m_Connection));
}

void QuicPeer::step()
{
    for (const Place& place : m_Places)
        read(place);
    if (!m_Connection)
        return;
    if (!m_IsOver && ngtcp2_conn_get_expiry(m_Connection) <= now())
        note(ngtcp2_conn_handle_expiry(m_Connection, now()));
    write();
}

void QuicPeer::read(const Place& place)
{
    const ngtcp2_pkt_info info{};
    std::string bytes;
    unsigned short port = 0;
    while (!m_IsOver && place.m_Socket->receive(bytes, port))
    {
        if (!m_Connection && !openServer(bytes, port))
            continue;
        const Path path(place.m_Told, m_Server);
        note(ngtcp2_conn_read_pkt(m_Connection, &path.m_Path, &info, reinterpret_cast<const uint8_t*>(bytes.data()),
                                  bytes.size(), now()));
    }
}

void QuicPeer::confirm(size_t size)
{
    m_Confirmed += size;
    while (m_NextPiece > 0 && m_Confirmed >= m_Output.front().size())
    {
        m_Confirmed -= m_Output.front().size();
        m_Output.pop_front();
        --m_NextPiece;
    }
}

std::string QuicPeer::writeDatagram(unsigned short& from)
{
    if (m_Stream < 0 && m_IsUp && !m_IsServer && ngtcp2_conn_open_bidi_stream(m_Connection, &m_Stream, nullptr) != 0)
        m_Stream = -1;
    const bool hasBytes = m_Stream >= 0 && m_NextPiece < m_Output.size();
    const bool isLast = m_Stream >= 0 && m_IsFinishing && m_NextPiece + 1 >= m_Output.size();
    ngtcp2_vec piece{};
    if (hasBytes)
    {
        std::string& bytes = m_Output[m_NextPiece];
        piece = {reinterpret_cast<uint8_t*>(bytes.data()) + m_NextByte, bytes.size() - m_NextByte};
    }
    uint8_t packet[NGTCP2_MAX_UDP_PAYLOAD_SIZE];
    ngtcp2_path_storage path;
    ngtcp2_path_storage_zero(&path);
    ngtcp2_pkt_info info{};
    ngtcp2_ssize taken = -1;
    const auto size = ngtcp2_conn_writev_stream(m_Connection, &path.path, &info, packet, sizeof packet, &taken,
                                                isLast ? NGTCP2_WRITE_STREAM_FLAG_FIN : NGTCP2_WRITE_STREAM_FLAG_NONE,
                                                hasBytes || isLast ? m_Stream : -1, &piece, hasBytes, now());
    if (taken > 0)
        m_NextByte += static_cast<size_t>(taken);
    if (hasBytes && m_NextByte == m_Output[m_NextPiece].size())
    {
        ++m_NextPiece;
        m_NextByte = 0;
    }
    if (taken >= 0 && isLast && m_NextPiece >= m_Output.size())
        m_IsFinishing = false;
    // A stream that the other end has stopped accepts no data; the connection continues.
    if (size < 0 && size != NGTCP2_ERR_STREAM_SHUT_WR && size != NGTCP2_ERR_STREAM_NOT_FOUND)
        note(static_cast<int>(size));
    if (size <= 0)
        return {};
    from = ntohs(reinterpret_cast<const sockaddr_in*>(path.path.local.addr)->sin_port);
    return {reinterpret_cast<const char*>(packet), static_cast<size_t>(size)};
}

void QuicPeer::write()
{
    const auto send = [this](unsigned short from, const std::string& datagram)
    {
        for (const Place& place : m_Places)
            if (place.m_Told == from)
                place.m_Socket->send(m_Server, datagram);
    };
    Calls::s_Writing = this;
    std::string joined;
    unsigned short from = 0;
    while (!m_IsOver)
    {
        const std::string datagram = writeDatagram(from);
        if (datagram.empty())
            break;
        if (!joined.empty() && (!m_Wish.m_IsJoining || joined.size() + datagram.size() > kMostBytes))
            send(from, std::exchange(joined, std::string()));
        joined += datagram;
        // A packet with a short header has no length field, so nothing can follow it.
        if (std::exchange(m_IsDatagramFull, false))
            send(from, std::exchange(joined, std::string()));
    }
    if (!joined.empty())
        send(from, joined);
    Calls::s_Writing = nullptr;
    if (!m_IsOver)
        ngtcp2_conn_update_pkt_tx_time(m_Connection, now());
}

} // namespace test
