// The callbacks of an ngtcp2 connection.
#pragma once

#include "net/quic/inner/link.h"

namespace zet::inner
{

// The user data of each is its link. No exception may pass through ngtcp2, which is C; a callback without memory fails.
struct QuicCalls
{
    static ngtcp2_callbacks all();

    // While it exists, packets are read for this link: ngtcp2 gives no user data to its encryption callbacks.
    class Reading
    {
    public:
        explicit Reading(QuicLink& link) { s_Reader = &link; }
        ~Reading() { s_Reader = nullptr; }
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;
    };

private:
    static QuicLink& link(void* user) { return *static_cast<QuicLink*>(user); }
    // The call's result, or NGTCP2_ERR_CALLBACK_FAILURE if it throws.
    template <class Call>
    static int guard(Call call);
    // Decrypts a packet and removes the frames that ngtcp2 must not see.
    static int onOpen(uint8_t* out, const ngtcp2_crypto_aead* aead, const ngtcp2_crypto_aead_ctx* context,
                      const uint8_t* sealed, size_t size, const uint8_t* nonce, size_t nonceSize, const uint8_t* head,
                      size_t headSize);
    static int onCryptoData(ngtcp2_conn* connection, ngtcp2_crypto_level level, uint64_t offset, const uint8_t* data,
                            size_t size, void* user);
    static int onHandshakeCompleted(ngtcp2_conn* connection, void* user);
    static int onStreamData(ngtcp2_conn* connection, uint32_t flags, int64_t stream, uint64_t offset,
                            const uint8_t* data, size_t size, void* user, void* streamUser);
    static int onConfirmed(ngtcp2_conn* connection, int64_t stream, uint64_t offset, uint64_t size, void* user,
                           void* streamUser);
    static int onStreamOpen(ngtcp2_conn* connection, int64_t stream, void* user);
    static int onStreamReset(ngtcp2_conn* connection, int64_t stream, uint64_t size, uint64_t code, void* user,
                             void* streamUser);
    // The first id of the peer is activated once the last packet of the handshake has been sent.
    static int onPeerId(ngtcp2_conn* connection, int type, uint64_t number, const ngtcp2_cid* id, const uint8_t* token,
                        void* user);
    static int onNewId(ngtcp2_conn* connection, ngtcp2_cid* id, uint8_t* token, size_t size, void* user);
    static int onOldId(ngtcp2_conn* connection, const ngtcp2_cid* id, void* user);
    static void onRandom(uint8_t* data, size_t size, const ngtcp2_rand_ctx* context);

    static thread_local QuicLink* s_Reader;
};

} // namespace zet::inner
