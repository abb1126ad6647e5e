// Log records and maintenance. A log record has no answer, so nothing is acknowledged with it: records are collected
// and written together, and a process that is killed loses those of its last second.
#include "commands/logs.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/platform_codes.h"
#include "framework/log.h"
#include "framework/time.h"
#include "host/service.h"

#include <chrono>

using namespace std::chrono_literals;

namespace arena::platform
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

constexpr auto kWriteTime = 1s;
// More are dropped until the next writing, so that no client fills the memory.
constexpr size_t kMostRecords = 1000;
constexpr int kLineLimit = 1000;

struct Record
{
    const char* m_Kind;
    std::string m_Written;
    std::string m_Account;
    std::string m_Line;
};

class LogBook
{
public:
    explicit LogBook(Platform& platform) : m_Platform(platform) {}

    // Only of players: others could fill the database.
    void add(Session& session, const char* kind, const Text& line)
    {
        if (!session.isLoggedIn() || m_Records.size() >= kMostRecords)
            return;
        m_Records.push_back({kind, toUtf8(zet::Time::getCurrent().convertToString(true)),
                             toUtf8(session.getStored().m_Name), toUtf8(line.getSubString(0, kLineLimit))});
    }

    void write()
    {
        if (!m_Records.empty() && m_Platform.getAccounts().getDatabase().transact(
                                      [&](soci::session& sql)
                                      {
                                          for (const Record& record : m_Records)
                                              writeRecord(sql, record);
                                          return true;
                                      }))
            m_Records.clear();
    }

    void writeAlways()
    {
        write();
        m_Platform.getTasks().after(kWriteTime, [this] { writeAlways(); });
    }

private:
    static void writeRecord(soci::session& sql, const Record& record)
    {
        const std::string kind = record.m_Kind;
        sql << "INSERT INTO logs (written, kind, account, line) VALUES (:written, :kind, :account, :line)",
            soci::use(record.m_Written), soci::use(kind), soci::use(record.m_Account), soci::use(record.m_Line);
    }

    Platform& m_Platform;
    std::vector<Record> m_Records;
};

Text join(const Text& a, const Text& b, const Text& c, const Text& d)
{
    return a + L"|" + b + L"|" + c + L"|" + d;
}

// m_Text1: the account, m_Value1: what to do. Only for the player that the command line names.
void maintain(Platform& platform, Session& session, const CCmdMaintainRequest& request)
{
    CCmdMaintainReply reply;
    const auto answer = [&](Result result, const wchar_t* words)
    {
        reply.m_Value1 = result;
        reply.m_Text1 = request.m_Text1;
        reply.m_Text2 = words;
        session.send(reply);
    };
    if (!session.isLoggedIn() || session.getStored().m_Name != platform.getOptions().m_Operator)
        return answer(kNotAllowed, L"only the operator may do this");
    StoredAccount account;
    if (!platform.getAccounts().find(request.m_Text1, account))
        return platform.hasFailed() ? answer(kNotSaved, L"the database does not answer")
                                    : answer(kUnknownAccount, L"there is no such account");
    copyAccount(account.m_Records->m_Account, reply.m_Account);
    reply.m_MatchData3 = account.m_Records->m_MatchData3;
    reply.m_GlobalData = account.m_Records->m_GlobalData;
    if (request.m_Value1 == kKickOut)
    {
        Session* const player = platform.findSession(request.m_Text1);
        if (!player || player == &session)
            return answer(kUnknownThing, L"the player is not at this platform");
        player->kickOut();
    }
    answer(kDone, L"");
}

} // namespace

void installLogs(Platform& platform)
{
    const auto book = std::make_shared<LogBook>(platform);
    book->writeAlways();
    platform.getService().onStop([book] { book->write(); });
    platform.on<CCmdAddLog>([book](Session& session, const CCmdAddLog& log)
                            { book->add(session, "log", join(log.m_Text1, log.m_Text2, log.m_Text3, log.m_Text4)); });
    platform.on<CCmdLogLobby>(
        [book](Session& session, const CCmdLogLobby& log)
        { book->add(session, "lobby", join(log.m_Text1, log.m_Text2, log.m_Text3, log.m_Text4)); });
    platform.on<CCmdLogMatch>(
        [book](Session& session, const CCmdLogMatch& log)
        { book->add(session, "match", join(log.m_Text1, log.m_Text2, log.m_Text3, log.m_Text4)); });
    platform.on<CCmdLogPay>([book](Session& session, const CCmdLogPay& log)
                            { book->add(session, "pay", join(log.m_Text1, log.m_Text2, log.m_Text3, log.m_Text4)); });
    platform.on<CCmdLogLingYuanGou>(
        [book](Session& session, const CCmdLogLingYuanGou& log)
        { book->add(session, "campaign", join(log.m_Text1, log.m_Text2, log.m_Text3, log.m_Text4)); });
    platform.on<CCmdLogAccount>(
        [book](Session& session, const CCmdLogAccount& log)
        { book->add(session, "account", join(log.m_Text1, log.m_Text2, log.m_Text3, log.m_Text4)); });
    platform.on<CCmdMaintainRequest>([&platform](Session& session, const CCmdMaintainRequest& request)
                                     { maintain(platform, session, request); });
}

} // namespace arena::platform
