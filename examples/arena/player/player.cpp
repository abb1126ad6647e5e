#include "examples/arena/player/player.h"

#include "examples/arena/player/players.h"
#include "examples/arena/text.h"
#include "net/limits.h"
#include "packaging/data_packager.h"

#include <algorithm>
#include <cstdarg>
#include <iterator>

namespace arena::player
{

namespace
{

using std::chrono::milliseconds;

constexpr milliseconds kPoll{10};

} // namespace

class Player::Connection final : public CFrameworkClientProxySocket
{
public:
    explicit Connection(CCmdAnalyserSocket& analyser) : CFrameworkClientProxySocket(&analyser) {}

    // With TLS and a proxy once both are through.
    void onEstablished() override { m_IsUp = true; }
    void onEnd(const zet::EndCause&) override
    {
        m_IsUp = false;
        m_HasEnded = true;
    }

    bool m_IsUp = false;
    bool m_HasEnded = false;
};

Player::Player(Players& players, const zet::String_T<wchar_t>& name, int number)
    : m_Players(players), m_Name(name), m_Number(number), m_Account(CAccount::createInstance()),
      m_Tasks(players.getQuestions()), m_Life(players.getQuestions())
{
}

Player::~Player()
{
    m_Life.cancel();
    m_Tasks.cancel();
    closeConnection();
}

CCommandSocket& Player::getSocket()
{
    return *m_Connection;
}

void Player::confirm(const AccountData& record)
{
    AccountData& own = m_Account->m_Account;
    own = record;
    // The assignment leaves these two fields out.
    own.m_Value3 = record.m_Value3;
    std::copy(std::begin(record.m_Allowance), std::end(record.m_Allowance), std::begin(own.m_Allowance));
}

host::Handlers& Player::getHandlers()
{
    return m_Players.getHandlers();
}

CCmdAnalyserSocket& Player::getAnalyser()
{
    return m_Players.getAnalyser();
}

zet::System& Player::getSystem()
{
    return m_Players.getSystem();
}

bool Player::isConnected() const
{
    return m_Players.getOptions().m_Platforms.empty() || (m_Connection && m_Connection->m_IsUp);
}

bool Player::isConnecting() const
{
    return m_Connection && !m_Connection->m_IsUp && !m_Connection->m_HasEnded;
}

static void print(const zet::String_T<wchar_t>& name, const char* kind, const char* format, std::va_list arguments)
{
    char line[512];
    std::vsnprintf(line, sizeof line, format, arguments);
    say("%s: %s%s", shown(name), kind, static_cast<const char*>(line));
}

void Player::note(const char* format, ...)
{
    if (!m_Players.getOptions().m_IsVerbose)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    print(m_Name, "", format, arguments);
    va_end(arguments);
}

void Player::fail(const char* format, ...)
{
    const bool isRepeated = isInterrupted() || !isConnected();
    if (isRepeated && !m_Players.getOptions().m_IsVerbose)
        return;
    const bool isRefused = !isRepeated && m_Players.getOptions().m_ExpectsOutages;
    std::va_list arguments;
    va_start(arguments, format);
    print(m_Name, isRepeated ? "interrupted: " : isRefused ? "REFUSED " : "FAILED ", format, arguments);
    va_end(arguments);
    if (isRefused)
        interrupt();
    else if (!isRepeated)
        ++m_Failures;
}

void Player::failForGood(const char* words)
{
    say("%s: FAILED %s", shown(m_Name), words);
    ++m_Failures;
}

void Player::openConnection()
{
    closeConnection();
    const PlayerOptions& options = m_Players.getOptions();
    if (options.m_Platforms.empty())
        return;
    const HostPort& server = m_Moved.m_Port != 0 ? m_Moved : options.m_Platforms[m_Choice % options.m_Platforms.size()];
    m_Connection = new Connection(m_Players.getAnalyser());
    zet::NetLimits limits;
    limits.m_ConnectTime = static_cast<unsigned int>(kPatience.count());
    if (options.m_Proxy.m_Port != 0)
        m_Connection->SetProxy(options.m_Proxy.m_Host, options.m_Proxy.m_Port, L"", L"");
    m_Connection->m_HasEnded = !m_Connection->start(&getSystem()) || !m_Connection->setLimits(limits) ||
                               (!options.m_Tls.isNull() && !m_Connection->setTlsContext(options.m_Tls)) ||
                               !m_Connection->connect(server.m_Host, server.m_Port, true);
}

void Player::closeConnection()
{
    if (!m_Connection)
        return;
    m_Connection->close();
    m_Connection->stop();
}

void Player::moveTo(const HostPort& address)
{
    if (address.m_Port == m_Connection->GetPort() && address.m_Host == m_Connection->GetIP())
        return;
    note("moves to %s:%d", shown(address.m_Host).getBuffer(), static_cast<int>(address.m_Port));
    m_Moved = address;
    m_HasMoved = true;
    m_Connection->close();
}

void Player::onKick(CCommandSocket& socket)
{
    if (!m_Connection || &socket != m_Connection.get())
        return;
    ++m_Kicks;
    note("CCmdAccountKickOut");
    m_Connection->close();
}

bool Player::mayRepeat(const Script& script)
{
    if (++m_Repeats < (m_Players.getOptions().m_ExpectsOutages ? kMostRepeatsInOutages : kMostRepeats))
        return true;
    say("%s: FAILED %s was interrupted %d times", shown(m_Name), script.m_Name, m_Repeats);
    ++m_Failures;
    return false;
}

std::vector<unsigned char> Player::getRecord()
{
    const auto packager = std::make_unique<CDataPackager>();
    if (!m_Account->m_Account.Write(packager.get()))
        return {};
    const unsigned char* const bytes = packager->GetBuffer();
    return {bytes, bytes + packager->GetDataSize()};
}

void Player::start()
{
    m_Life.start(live());
}

host::Task Player::live()
{
    const PlayerOptions& options = m_Players.getOptions();
    const size_t count = options.m_Scripts.size();
    // The record before the last login, once everything is played.
    std::vector<unsigned char> record;
    bool isAudit = false;
    size_t next = 0;
    milliseconds waited{};
    for (milliseconds delay = kFirstDelay; !m_IsDone;)
    {
        LoginTurn turn(m_Players);
        while (options.m_Entry && !turn.take())
            co_await host::sleep(LoginTurn::kPause);
        openConnection();
        while (isConnecting())
            co_await host::sleep(kPoll);
        if (isConnected() && options.m_Entry)
        {
            const int failures = m_Failures;
            m_Tasks.start(options.m_Entry->m_Play(*this));
            while (m_Tasks.getCount() > 0)
                co_await host::sleep(kPoll);
            if (m_Failures > failures)
                break;
            if (isInterrupted())
            {
                // The login was refused.
                m_IsInterrupted = false;
                m_Connection->m_IsUp = false;
            }
        }
        turn.give();
        if (isConnected())
        {
            delay = kFirstDelay;
            waited = {};
        }
        while (isConnected() && !isAudit && (next < count || (!m_Players.isOver() && count > 0)))
        {
            const Script& script = *options.m_Scripts[next % count];
            m_IsInterrupted = false;
            while (script.m_LogsIn && !turn.take())
                co_await host::sleep(LoginTurn::kPause);
            m_Tasks.start(script.m_Play(*this));
            while (m_Tasks.getCount() > 0)
                co_await host::sleep(kPoll);
            turn.give();
            const bool isPlayed = !isInterrupted() && isConnected();
            m_Interruptions += isInterrupted();
            m_IsInterrupted = false;
            m_Played += isPlayed;
            if (isPlayed || !mayRepeat(script))
            {
                m_Repeats = 0;
                ++next;
            }
            else if (isConnected())
                co_await host::sleep(std::min(m_Repeats * kFirstDelay, kLongestDelay));
        }
        if (!isConnected())
        {
            note("no connection: %s", shown(m_Connection->getEndCause().getText()).getBuffer());
            const bool isLong = options.m_ExpectsOutages ? waited >= kLongestOutage : delay >= kLongestDelay;
            if ((m_Players.isOver() && isLong) || m_Kicks >= kMostKicks)
            {
                say("%s: FAILED no connection: %s", shown(m_Name), shown(m_Connection->getEndCause().getText()));
                ++m_Failures;
                break;
            }
            co_await host::sleep(delay);
            waited += delay;
            delay = std::min(delay * 2, kLongestDelay);
            ++m_Reconnects;
            // A move is tried once, and then the next address of the platform.
            if (m_HasMoved)
                m_HasMoved = false;
            else
            {
                m_Moved = {};
                ++m_Choice;
            }
        }
        else if (options.m_Entry && !isAudit)
        {
            isAudit = true;
            record = getRecord();
        }
        else
        {
            if (isAudit && (record.empty() || record != getRecord()))
                failForGood("the record after the last login is not the one before");
            m_IsDone = true;
        }
        closeConnection();
    }
    closeConnection();
    m_IsDone = true;
}

} // namespace arena::player
