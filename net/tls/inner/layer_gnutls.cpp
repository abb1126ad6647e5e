#include "net/tls/inner/layer_gnutls.h"

#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/tls/inner/store_gnutls.h"
#include "net/tls/inner/verify_gnutls.h"

#include <gnutls/x509.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace zet::inner
{

namespace
{

// The maximum of plain bytes in a TLS record.
constexpr int kRecord = 16384;
// GnuTLS's own limit for a handshake counts the messages of both sides, and with long chains a TLS 1.2 ticket contains
// the peer's chain a second time. TlsContext::kHandshakeInput is the limit for what the peer sends.
constexpr size_t kHandshakeMessages = 4 * static_cast<size_t>(TlsContext::kHandshakeInput);
// The number of warnings, keep-alives and the like that one step skips.
constexpr int kPassedOver = 8;

// Text of a certificate for display. A text with a zero byte inside could pass for another one, so it counts as empty.
std::string cleanText(const char* text, size_t size)
{
    return std::memchr(text, 0, size) ? std::string() : std::string(text, size);
}

std::string nameOf(gnutls_x509_crt_t certificate)
{
    char text[256];
    size_t size = sizeof text;
    if (gnutls_x509_crt_get_dn_by_oid(certificate, GNUTLS_OID_X520_COMMON_NAME, 0, 0, text, &size) == 0)
        return cleanText(text, size);
    for (unsigned int i = 0;; ++i)
    {
        size = sizeof text;
        const int kind = gnutls_x509_crt_get_subject_alt_name(certificate, i, text, &size, nullptr);
        if (kind == GNUTLS_SAN_DNSNAME)
            return cleanText(text, size);
        if (kind < 0)
            return std::string();
    }
}

} // namespace

// The functions that GnuTLS calls during an operation of the layer.
struct GnuTlsLayer::Calls
{
    static GnuTlsLayer& of(gnutls_session_t session)
    {
        return *static_cast<GnuTlsLayer*>(gnutls_session_get_ptr(session));
    }

    static ssize_t push(gnutls_transport_ptr_t self, const void* data, size_t size)
    {
        GnuTlsLayer& layer = *static_cast<GnuTlsLayer*>(self);
        if (layer.m_Wire && layer.m_Wire->m_Sealed.write(data, static_cast<int>(size), layer.m_Wire->m_Pool))
            return static_cast<ssize_t>(size);
        gnutls_transport_set_errno(layer.m_Session, ENOMEM);
        return -1;
    }

    static ssize_t pull(gnutls_transport_ptr_t self, void* data, size_t size)
    {
        GnuTlsLayer& layer = *static_cast<GnuTlsLayer*>(self);
        const size_t count = std::min(size, static_cast<size_t>(layer.m_Input.size()));
        if (count == 0)
        {
            gnutls_transport_set_errno(layer.m_Session, EAGAIN);
            return -1;
        }
        std::memcpy(data, layer.m_Input.data(), count);
        layer.m_Input.consume(static_cast<int>(count));
        return static_cast<ssize_t>(count);
    }

    // Never waits.
    static int isReadable(gnutls_transport_ptr_t self, unsigned int)
    {
        return static_cast<GnuTlsLayer*>(self)->m_Input.size() > 0 ? 1 : 0;
    }

    static int verify(gnutls_session_t session) { return of(session).verify(); }

    static int onTicket(gnutls_session_t session, unsigned int, unsigned int, unsigned int, const gnutls_datum_t*)
    {
        of(session).m_HasTicket = true;
        return 0;
    }
};

bool GnuTlsLayer::begin(const String_T<wchar_t>& peer)
{
    end();
    GnuTlsStore* const store = GnuTlsStore::of(*m_Context);
    if (!store)
        return false;
    store->fix();
    const unsigned int flags =
        (m_IsClient ? GNUTLS_CLIENT : GNUTLS_SERVER) | static_cast<unsigned int>(GNUTLS_NONBLOCK);
    if (gnutls_init(&m_Session, flags) != GNUTLS_E_SUCCESS)
    {
        m_Session = nullptr;
        return false;
    }
    m_IsOn = true;
    m_Credentials = store->credentials();
    gnutls_session_set_ptr(m_Session, this);
    gnutls_transport_set_ptr(m_Session, this);
    gnutls_transport_set_push_function(m_Session, Calls::push);
    gnutls_transport_set_pull_function(m_Session, Calls::pull);
    gnutls_transport_set_pull_timeout_function(m_Session, Calls::isReadable);
    gnutls_handshake_set_timeout(m_Session, 0);
    gnutls_handshake_set_max_packet_length(m_Session, kHandshakeMessages);
    gnutls_session_set_verify_function(m_Session, Calls::verify);
    int fault = gnutls_priority_set(m_Session, store->getPriority());
    if (fault == GNUTLS_E_SUCCESS)
        fault = gnutls_credentials_set(m_Session, GNUTLS_CRD_CERTIFICATE, m_Credentials->m_Handle);
    if (fault == GNUTLS_E_SUCCESS && !m_IsClient)
        fault = gnutls_session_ticket_enable_server(m_Session, &m_Credentials->m_TicketKey);
    if (fault != GNUTLS_E_SUCCESS)
    {
        end();
        return false;
    }
    if (!m_IsClient)
    {
        requestCertificate(m_Session, m_Context->getClientCertificate());
        return true;
    }
    m_HostName = StringHelper::wideToUtf8(m_SetHost.isEmpty() ? m_Host.getBuffer() : m_SetHost.getBuffer()).getBuffer();
    // TLS does not allow an address as server name.
    if (!isAddress(m_HostName.c_str()))
        gnutls_server_name_set(m_Session, GNUTLS_NAME_DNS, m_HostName.data(), m_HostName.size());
    gnutls_handshake_set_hook_function(m_Session, GNUTLS_HANDSHAKE_NEW_SESSION_TICKET, GNUTLS_HOOK_POST,
                                       Calls::onTicket);
    m_SessionKey = m_HostName + ' ' + StringHelper::wideToUtf8(peer.getBuffer()).getBuffer();
    m_Offered = store->take(m_SessionKey);
    if (!m_Offered.empty())
        gnutls_session_set_data(m_Session, m_Offered.data(), m_Offered.size());
    return true;
}

void GnuTlsLayer::end()
{
    if (m_Session)
        gnutls_deinit(m_Session);
    m_Session = nullptr;
    m_IsOn = false;
    m_Credentials.reset();
    m_Wire = nullptr;
    m_Input.drop(nullptr);
    m_HandshakeInput = 0;
    m_IsDone = false;
    m_HasTicket = false;
    m_VerifyAlert = 0;
    m_Rule = EndCause::kOtherRule;
    GnuTlsStore::wipe(m_Offered);
    m_Offered = {};
}

int GnuTlsLayer::verify()
{
    return verifyPeer(m_Session, m_IsClient, m_HostName.c_str(), m_Fault, &m_VerifyAlert, &m_Rule);
}

// The alert that the protocol demands where GnuTLS would send a more general one; otherwise 0.
int GnuTlsLayer::alertOf(int code) const
{
    if (code == GNUTLS_E_CERTIFICATE_VERIFICATION_ERROR)
        return m_VerifyAlert;
    const bool lacksCertificate = code == GNUTLS_E_NO_CERTIFICATE_FOUND || code == GNUTLS_E_CERTIFICATE_REQUIRED;
    return lacksCertificate && gnutls_protocol_get_version(m_Session) != GNUTLS_TLS1_3 ? GNUTLS_A_HANDSHAKE_FAILURE : 0;
}

GnuTlsLayer::Result GnuTlsLayer::fail(int code)
{
    m_Cause = causeOfTls(code, m_Rule);
    if (code == GNUTLS_E_FATAL_ALERT_RECEIVED)
    {
        const auto alert = gnutls_alert_get(m_Session);
        m_Cause.m_Detail = static_cast<unsigned short>(alert);
        const char* const name = gnutls_alert_get_name(alert);
        m_Fault = L"The peer says: ";
        m_Fault += StringHelper::utf8ToWide(name ? name : "unknown alert");
        return kFailed;
    }
    // A text of verify() is more precise than the code's.
    if (m_Fault.isEmpty())
        m_Fault = StringHelper::utf8ToWide(gnutls_strerror(code));
    if (const int alert = alertOf(code))
        gnutls_alert_send(m_Session, GNUTLS_AL_FATAL, static_cast<gnutls_alert_description_t>(alert));
    else
        gnutls_alert_send_appropriate(m_Session, code);
    return kFailed;
}

GnuTlsLayer::Result GnuTlsLayer::shakeHands(Wire wire)
{
    m_Wire = &wire;
    m_Fault = String_T<wchar_t>();
    int code = GNUTLS_E_AGAIN;
    int passedOver = 0;
    for (bool goesOn = true; goesOn;)
    {
        const int before = m_Input.size();
        code = gnutls_handshake(m_Session);
        if (code == GNUTLS_E_SUCCESS || gnutls_error_is_fatal(code))
            break;
        // gnutls_handshake() returns after a record that holds a part of a message. The next record may hold the rest.
        goesOn = code == GNUTLS_E_AGAIN ? m_Input.size() > 0 && m_Input.size() < before : ++passedOver < kPassedOver;
    }
    Result result = kNothingYet;
    if (code == GNUTLS_E_SUCCESS)
        result = finish();
    else if (gnutls_error_is_fatal(code))
        result = fail(code);
    m_Wire = nullptr;
    return result;
}

GnuTlsLayer::Result GnuTlsLayer::finish()
{
    // A resumed session skips verification, and the certificate may have expired since.
    if (isResumed())
        if (const int code = verify())
            return fail(code);
    m_IsDone = true;
    // A TLS 1.2 ticket may be used again, and a server that resumes need not send a new one.
    if (isResumed() && !m_HasTicket && gnutls_protocol_get_version(m_Session) == GNUTLS_TLS1_2)
        GnuTlsStore::of(*m_Context)->keep(m_SessionKey, std::move(m_Offered));
    GnuTlsStore::wipe(m_Offered);
    m_Offered = {};
    keepSession();
    return kDone;
}

void GnuTlsLayer::keepSession()
{
    if (!m_HasTicket || !m_IsDone)
        return;
    m_HasTicket = false;
    // Without this flag gnutls_session_get_data2() would wait for a ticket.
    gnutls_datum_t data{nullptr, 0};
    if (!(gnutls_session_get_flags(m_Session) & GNUTLS_SFLAGS_SESSION_TICKET) ||
        gnutls_session_get_data2(m_Session, &data) != GNUTLS_E_SUCCESS)
        return;
    GnuTlsStore::of(*m_Context)->keep(m_SessionKey, GnuTlsStore::Session(data.data, data.data + data.size));
    gnutls_memset(data.data, 0, data.size);
    gnutls_free(data.data);
}

int GnuTlsLayer::open(void* data, int size, Wire wire)
{
    m_Wire = &wire;
    int result = kNothingYet;
    for (int i = 0; i < kPassedOver && result == kNothingYet; ++i)
    {
        const ssize_t got = gnutls_record_recv(m_Session, data, static_cast<size_t>(size));
        if (got > 0)
            result = static_cast<int>(got);
        else if (got == 0)
            result = kEnded;
        // Renegotiation is refused.
        else if (got == GNUTLS_E_REHANDSHAKE || gnutls_error_is_fatal(static_cast<int>(got)))
            result = fail(static_cast<int>(got));
        else if (m_Input.size() == 0)
            break;
    }
    if (m_HasTicket && result != kFailed)
        keepSession();
    m_Wire = nullptr;
    return result;
}

bool GnuTlsLayer::seal(OutputQueue& plain, Wire wire)
{
    const std::span<const unsigned char> left = plain.left(*plain.front());
    m_Wire = &wire;
    const ssize_t taken =
        gnutls_record_send(m_Session, left.data(), std::min(left.size(), static_cast<size_t>(kRecord)));
    m_Wire = nullptr;
    if (taken <= 0)
        return false;
    plain.consume(static_cast<size_t>(taken), wire.m_Pool);
    return true;
}

void GnuTlsLayer::sendCloseNotify(Wire wire)
{
    m_Wire = &wire;
    gnutls_bye(m_Session, GNUTLS_SHUT_WR);
    m_Wire = nullptr;
}

bool GnuTlsLayer::hasInput() const
{
    return m_Input.size() > 0 || gnutls_record_check_pending(m_Session) > 0;
}

bool GnuTlsLayer::isResumed() const
{
    return m_Session && gnutls_session_is_resumed(m_Session) != 0;
}

String_T<wchar_t> GnuTlsLayer::getPeerName() const
{
    unsigned int count = 0;
    const gnutls_datum_t* const chain =
        m_Session && m_IsDone ? gnutls_certificate_get_peers(m_Session, &count) : nullptr;
    gnutls_x509_crt_t certificate = nullptr;
    if (!chain || count == 0 || gnutls_x509_crt_init(&certificate) != GNUTLS_E_SUCCESS)
        return String_T<wchar_t>();
    std::string name;
    if (gnutls_x509_crt_import(certificate, &chain[0], GNUTLS_X509_FMT_DER) == GNUTLS_E_SUCCESS)
        name = nameOf(certificate);
    gnutls_x509_crt_deinit(certificate);
    return StringHelper::utf8ToWide(name.c_str());
}

String_T<wchar_t> GnuTlsLayer::getDescription() const
{
    char* text = m_Session && m_IsDone ? gnutls_session_get_desc(m_Session) : nullptr;
    const String_T<wchar_t> description = StringHelper::utf8ToWide(text);
    gnutls_free(text);
    return description;
}

} // namespace zet::inner
