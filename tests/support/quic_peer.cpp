#include "tests/support/quic_peer.h"

#include "framework/time.h"

#include <gnutls/crypto.h>
#include <netinet/in.h>
#include <ngtcp2/ngtcp2_crypto_gnutls.h>

#include <stdexcept>

namespace test
{

namespace
{

// Said again by hand, as another maker would: a change of ours shows here.
constexpr char kPriority[] = "NORMAL:-VERS-ALL:+VERS-TLS1.3:%DISABLE_TLS13_COMPAT_MODE";
constexpr char kProtocol[] = "commonground/1";
constexpr size_t kPlaces = 4;

ngtcp2_tstamp now()
{
    return NGTCP2_SECONDS + zet::getTimeTick() * NGTCP2_MILLISECONDS;
}

// Two ports of the loopback, with the addresses that ngtcp2 wants behind them.
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
        calls.recv_crypto_data = ngtcp2_crypto_recv_crypto_data_cb;
        calls.encrypt = ngtcp2_crypto_encrypt_cb;
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
};

QuicPeer::QuicPeer(unsigned short server) : m_Server(server)
{
    m_RetiredIds.reserve(kRetiredIds);
    const Path path(addPlace().m_Told, server);
    ngtcp2_cid other;
    ngtcp2_cid self;
    randomId(other, 16);
    randomId(self, 16);
    const auto calls = Calls::all();
    ngtcp2_settings settings;
    ngtcp2_settings_default(&settings);
    settings.initial_ts = now();
    ngtcp2_transport_params params;
    ngtcp2_transport_params_default(&params);
    params.initial_max_stream_data_bidi_local = 256 * 1024;
    params.initial_max_data = 256 * 1024;
    const gnutls_datum_t protocol = {reinterpret_cast<unsigned char*>(const_cast<char*>(kProtocol)),
                                     sizeof kProtocol - 1};
    m_Ref = {[](ngtcp2_crypto_conn_ref* ref) { return static_cast<QuicPeer*>(ref->user_data)->m_Connection; }, this};
    if (ngtcp2_conn_client_new(&m_Connection, &other, &self, &path.m_Path, NGTCP2_PROTO_VER_V1, &calls, &settings,
                               &params, nullptr, this) != 0 ||
        gnutls_certificate_allocate_credentials(&m_Credentials) < 0 ||
        gnutls_init(&m_Session, GNUTLS_CLIENT | GNUTLS_NONBLOCK | GNUTLS_NO_SIGNAL) < 0 ||
        gnutls_priority_set_direct(m_Session, kPriority, nullptr) < 0 ||
        gnutls_credentials_set(m_Session, GNUTLS_CRD_CERTIFICATE, m_Credentials) < 0 ||
        gnutls_alpn_set_protocols(m_Session, &protocol, 1, GNUTLS_ALPN_MANDATORY) < 0 ||
        ngtcp2_crypto_gnutls_configure_client_session(m_Session) != 0)
        throw std::runtime_error("no QUIC peer");
    gnutls_session_set_ptr(m_Session, &m_Ref);
    ngtcp2_conn_set_tls_native_handle(m_Connection, m_Session);
    write();
}

QuicPeer::~QuicPeer()
{
    ngtcp2_conn_del(m_Connection);
    gnutls_deinit(m_Session);
    gnutls_certificate_free_credentials(m_Credentials);
}

QuicPeer::Place& QuicPeer::addPlace()
{
    auto socket = std::make_unique<BareUdp>();
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
    m_Places.back().m_Socket = std::make_unique<BareUdp>();
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
    if (!m_IsOver && ngtcp2_conn_get_expiry(m_Connection) <= now())
        note(ngtcp2_conn_handle_expiry(m_Connection, now()));
    write();
}

void QuicPeer::read(const Place& place)
{
    const Path path(place.m_Told, m_Server);
    const ngtcp2_pkt_info info{};
    std::string bytes;
    unsigned short port = 0;
    while (!m_IsOver && place.m_Socket->receive(bytes, port))
        note(ngtcp2_conn_read_pkt(m_Connection, &path.m_Path, &info, reinterpret_cast<const uint8_t*>(bytes.data()),
                                  bytes.size(), now()));
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

void QuicPeer::write()
{
    while (!m_IsOver)
    {
        if (m_Stream < 0 && m_IsUp && ngtcp2_conn_open_bidi_stream(m_Connection, &m_Stream, nullptr) != 0)
            m_Stream = -1;
        const bool hasBytes = m_Stream >= 0 && m_NextPiece < m_Output.size();
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
        const auto size =
            ngtcp2_conn_writev_stream(m_Connection, &path.path, &info, packet, sizeof packet, &taken,
                                      NGTCP2_WRITE_STREAM_FLAG_NONE, hasBytes ? m_Stream : -1, &piece, hasBytes, now());
        if (taken > 0)
            m_NextByte += static_cast<size_t>(taken);
        if (hasBytes && m_NextByte == m_Output[m_NextPiece].size())
        {
            ++m_NextPiece;
            m_NextByte = 0;
        }
        if (size < 0)
            note(static_cast<int>(size));
        if (size <= 0)
            break;
        const auto local = ntohs(reinterpret_cast<const sockaddr_in*>(path.path.local.addr)->sin_port);
        for (const Place& place : m_Places)
            if (place.m_Told == local)
                place.m_Socket->send(m_Server,
                                     std::string(reinterpret_cast<const char*>(packet), static_cast<size_t>(size)));
    }
    if (!m_IsOver)
        ngtcp2_conn_update_pkt_tx_time(m_Connection, now());
}

} // namespace test
