#include "net/quic/inner/calls.h"

#include "net/quic/inner/router.h"

#include <gnutls/crypto.h>

namespace zet::inner
{

template <class Call>
int QuicCalls::guard(Call call)
{
    try
    {
        return call();
    }
    catch (...)
    {
        return NGTCP2_ERR_CALLBACK_FAILURE;
    }
}

ngtcp2_callbacks QuicCalls::all()
{
    ngtcp2_callbacks calls{};
    calls.client_initial = ngtcp2_crypto_client_initial_cb;
    calls.recv_client_initial = ngtcp2_crypto_recv_client_initial_cb;
    calls.recv_crypto_data = onCryptoData;
    calls.handshake_completed = onHandshakeCompleted;
    calls.encrypt = ngtcp2_crypto_encrypt_cb;
    calls.decrypt = onOpen;
    calls.hp_mask = ngtcp2_crypto_hp_mask_cb;
    calls.recv_stream_data = onStreamData;
    calls.acked_stream_data_offset = onConfirmed;
    calls.stream_open = onStreamOpen;
    calls.stream_reset = onStreamReset;
    calls.dcid_status = onPeerId;
    calls.recv_retry = ngtcp2_crypto_recv_retry_cb;
    calls.rand = onRandom;
    calls.get_new_connection_id = onNewId;
    calls.remove_connection_id = onOldId;
    calls.update_key = ngtcp2_crypto_update_key_cb;
    calls.delete_crypto_aead_ctx = ngtcp2_crypto_delete_crypto_aead_ctx_cb;
    calls.delete_crypto_cipher_ctx = ngtcp2_crypto_delete_crypto_cipher_ctx_cb;
    calls.get_path_challenge_data = ngtcp2_crypto_get_path_challenge_data_cb;
    calls.version_negotiation = ngtcp2_crypto_version_negotiation_cb;
    return calls;
}

thread_local QuicLink* QuicCalls::s_Reader = nullptr;

int QuicCalls::onOpen(uint8_t* out, const ngtcp2_crypto_aead* aead, const ngtcp2_crypto_aead_ctx* context,
                      const uint8_t* sealed, size_t size, const uint8_t* nonce, size_t nonceSize, const uint8_t* head,
                      size_t headSize)
{
    const int result = ngtcp2_crypto_decrypt_cb(out, aead, context, sealed, size, nonce, nonceSize, head, headSize);
    const bool isShort = headSize > 0 && !(head[0] & 0x80);
    if (result == 0 && isShort && s_Reader)
        s_Reader->m_Frames.clean(out, size - aead->max_overhead);
    return result;
}

int QuicCalls::onCryptoData(ngtcp2_conn* connection, ngtcp2_crypto_level level, uint64_t offset, const uint8_t* data,
                            size_t size, void* user)
{
    // After the handshake TLS messages are not needed. While its session still exists, a message that asks for new keys
    // would trigger an assertion in ngtcp2; QUIC updates keys in another way.
    if (!link(user).m_Session || level == NGTCP2_CRYPTO_LEVEL_APPLICATION)
        return 0;
    return ngtcp2_crypto_recv_crypto_data_cb(connection, level, offset, data, size, user);
}

int QuicCalls::onHandshakeCompleted(ngtcp2_conn*, void* user)
{
    link(user).m_IsStanding = true;
    return 0;
}

int QuicCalls::onStreamData(ngtcp2_conn*, uint32_t flags, int64_t, uint64_t, const uint8_t* data, size_t size,
                            void* user, void*)
{
    return guard([&] { return link(user).onStreamData(data, size, flags & NGTCP2_STREAM_DATA_FLAG_FIN); });
}

int QuicCalls::onConfirmed(ngtcp2_conn*, int64_t, uint64_t, uint64_t size, void* user, void*)
{
    return guard(
        [&]
        {
            link(user).onConfirmed(static_cast<size_t>(size));
            return 0;
        });
}

int QuicCalls::onStreamOpen(ngtcp2_conn*, int64_t stream, void* user)
{
    link(user).m_Stream = stream;
    return 0;
}

int QuicCalls::onStreamReset(ngtcp2_conn*, int64_t, uint64_t, uint64_t, void* user, void*)
{
    link(user).m_IsCut = true;
    return 0;
}

int QuicCalls::onPeerId(ngtcp2_conn*, int type, uint64_t, const ngtcp2_cid*, const uint8_t*, void* user)
{
    if (type == NGTCP2_CONNECTION_ID_STATUS_TYPE_ACTIVATE)
        link(user).m_IsHandshakeSent = true;
    return 0;
}

int QuicCalls::onNewId(ngtcp2_conn*, ngtcp2_cid* id, uint8_t* token, size_t size, void* user)
{
    if (size != QuicId::kSize || gnutls_rnd(GNUTLS_RND_RANDOM, token, NGTCP2_STATELESS_RESET_TOKENLEN) < 0)
        return NGTCP2_ERR_CALLBACK_FAILURE;
    return guard([&] { return link(user).m_Router.makeId(link(user), *id) ? 0 : NGTCP2_ERR_CALLBACK_FAILURE; });
}

int QuicCalls::onOldId(ngtcp2_conn*, const ngtcp2_cid* id, void* user)
{
    link(user).m_Router.removeId(link(user), *id);
    return 0;
}

void QuicCalls::onRandom(uint8_t* data, size_t size, const ngtcp2_rand_ctx*)
{
    // ngtcp2 uses these bytes only to grease a bit that has no meaning, so zeros do no harm.
    if (gnutls_rnd(GNUTLS_RND_NONCE, data, size) < 0)
        std::memset(data, 0, size);
}

} // namespace zet::inner
