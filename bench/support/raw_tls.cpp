// The floor of TLS: GnuTLS over a pair of sockets, by bare epoll.
#include "bench/support/trips.h"

#ifdef COMMONGROUND_BENCH_TLS

#include "bench/support/processes.h"
#include "bench/support/raw_echo.h"
#include "bench/support/rounds.h"

#include <gnutls/gnutls.h>

#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench
{

namespace
{

constexpr size_t kPacket = 35;
constexpr int kRounds = 5;

class TlsEnd
{
public:
    TlsEnd(int socket, const Identity* server) : m_Epoll(epoll_create1(0))
    {
        gnutls_certificate_allocate_credentials(&m_Credentials);
        if (server)
        {
            const gnutls_datum_t chain = datumOf(server->chain());
            const gnutls_datum_t key = datumOf(server->key());
            need(gnutls_certificate_set_x509_key_mem(m_Credentials, &chain, &key, GNUTLS_X509_FMT_PEM) == 0, "key");
        }
        gnutls_init(&m_Session, server ? GNUTLS_SERVER : GNUTLS_CLIENT);
        gnutls_set_default_priority(m_Session);
        gnutls_credentials_set(m_Session, GNUTLS_CRD_CERTIFICATE, m_Credentials);
        gnutls_transport_set_int(m_Session, socket);
        int result = 0;
        do
            result = gnutls_handshake(m_Session);
        while (result < 0 && gnutls_error_is_fatal(result) == 0);
        need(result == 0 && gnutls_protocol_get_version(m_Session) == GNUTLS_TLS1_3, "a TLS 1.3 handshake");
        epoll_event event{};
        event.events = EPOLLIN;
        need(epoll_ctl(m_Epoll, EPOLL_CTL_ADD, socket, &event) == 0, "epoll_ctl");
    }
    ~TlsEnd()
    {
        gnutls_deinit(m_Session);
        gnutls_certificate_free_credentials(m_Credentials);
        close(m_Epoll);
    }
    TlsEnd(const TlsEnd&) = delete;
    TlsEnd& operator=(const TlsEnd&) = delete;

    bool receive()
    {
        for (size_t there = 0; there < kPacket;)
        {
            if (gnutls_record_check_pending(m_Session) == 0)
            {
                epoll_event event;
                need(epoll_wait(m_Epoll, &event, 1, -1) == 1, "epoll_wait");
            }
            const ssize_t got = gnutls_record_recv(m_Session, m_Packet + there, kPacket - there);
            if (got <= 0 && (got == 0 || gnutls_error_is_fatal(static_cast<int>(got)) != 0))
                return false;
            there += got > 0 ? static_cast<size_t>(got) : 0;
        }
        return true;
    }
    bool send() { return gnutls_record_send(m_Session, m_Packet, kPacket) == static_cast<ssize_t>(kPacket); }

private:
    static gnutls_datum_t datumOf(const std::string& text)
    {
        return {reinterpret_cast<unsigned char*>(const_cast<char*>(text.data())),
                static_cast<unsigned int>(text.size())};
    }

    int m_Epoll;
    gnutls_certificate_credentials_t m_Credentials = nullptr;
    gnutls_session_t m_Session = nullptr;
    unsigned char m_Packet[kPacket] = {};
};

} // namespace

std::vector<double> runBareTls(const Trip& trip)
{
    RawPair pair;
    const pid_t child = inChild(
        [&]
        {
            close(pair.m_Near);
            TlsEnd end(pair.m_Far, trip.m_Identity);
            while (end.receive() && end.send())
            {
            }
            return true;
        });
    close(pair.m_Far);
    pair.m_Far = -1;
    std::vector<double> seconds;
    {
        TlsEnd end(pair.m_Near, nullptr);
        for (int round = 0; round <= kRounds; ++round)
            seconds.push_back(secondsOf(
                [&]
                {
                    for (int i = 0; i < trip.m_Count; ++i)
                        need(end.send() && end.receive(), "a trip through TLS");
                }));
        shutdown(pair.m_Near, SHUT_RDWR);
    }
    finish(child);
    // The first round warms up.
    seconds.erase(seconds.begin());
    return seconds;
}

} // namespace bench

#else

namespace bench
{

std::vector<double> runBareTls(const Trip&)
{
    return {};
}

} // namespace bench

#endif
