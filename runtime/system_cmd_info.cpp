#include "runtime/system_cmd_info.h"

#include "dispatch/ids/envelope.h"
#include "framework/json.h"
#include "framework/platform/platform.h"
#include "packaging/command_head.h"
#include "packs/envelope.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <utility>

namespace
{

constexpr wchar_t kUnknownSocket[] = L"Unkown";

// The keys of the document, for both directions.
constexpr wchar_t kMem[] = L"mem";
constexpr wchar_t kTick[] = L"tick";
constexpr wchar_t kConnect[] = L"connect";
constexpr wchar_t kCmdsOp[] = L"cmdsop";
constexpr wchar_t kCount[] = L"count";
constexpr wchar_t kQuery[] = L"query";
constexpr wchar_t kAl[] = L"al";
constexpr wchar_t kMl[] = L"ml";
constexpr wchar_t kD1[] = L"d1";
constexpr wchar_t kD2[] = L"d2";
constexpr wchar_t kServerTPS[] = L"servertps";
constexpr wchar_t kSocket[] = L"socket";
constexpr wchar_t kRecvSize[] = L"recvsize";
constexpr wchar_t kSendSize[] = L"sendsize";

// 32-bit sums, which wrap.
unsigned long sum32(unsigned long a, unsigned long b)
{
    return static_cast<unsigned int>(a + b);
}

int sum32(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}

unsigned long ticksSince(unsigned long tick)
{
    return static_cast<unsigned int>(zet::getTimeTick() - tick);
}

int roundedKiB(unsigned long bytes)
{
    const float rate = static_cast<float>((static_cast<double>(bytes) + 0.01) / 1024.0);
    return static_cast<int>(std::floor(rate + 0.5));
}

void tick(SystemCmdInfo::ProcessInfo& process, unsigned long elapsedMs)
{
    process.m_TickCount = sum32(process.m_TickCount, 1);
    process.m_Elapsed = sum32(process.m_Elapsed, elapsedMs);
    if (process.m_Elapsed <= process.m_Period)
        return;
    process.m_MemoryMB = static_cast<int>(zet::platform::getWorkingSetSize() >> 20);
    process.m_TickTime = process.m_Elapsed / static_cast<unsigned long>(std::max(process.m_TickCount, 1));
    process.m_TickCount = 0;
    process.m_Elapsed = 0;
}

void tick(SystemCmdInfo::ServerTPS& socket, unsigned long elapsedMs)
{
    if (socket.m_Period == 0)
        return;
    socket.m_Elapsed = sum32(socket.m_Elapsed, elapsedMs);
    if (socket.m_Elapsed <= socket.m_Period)
        return;
    // A host's own record may have a period below a second; it counts as one second.
    const unsigned long seconds = std::max(socket.m_Elapsed / 1000, 1UL);
    socket.m_RecvRate = socket.m_RecvBytes / seconds;
    socket.m_SendRate = socket.m_SendBytes / seconds;
    socket.m_RecvBytes = 0;
    socket.m_SendBytes = 0;
    socket.m_RecvCount = 0;
    socket.m_SendCount = 0;
    socket.m_Elapsed = 0;
}

// Whether only JSON white space follows.
bool isBlank(const wchar_t* text)
{
    return text[std::wcsspn(text, L" \t\r\n")] == L'\0';
}

unsigned long sumOf(const std::map<zet::String_T<wchar_t>, SystemCmdInfo::ServerTPS>& sockets,
                    unsigned long SystemCmdInfo::ServerTPS::*rate)
{
    unsigned long sum = 0;
    for (const auto& [name, socket] : sockets)
        sum = sum32(sum, socket.*rate);
    return sum;
}

unsigned long rateOf(const std::map<zet::String_T<wchar_t>, SystemCmdInfo::ServerTPS>& sockets,
                     const zet::String_T<wchar_t>& name, unsigned long SystemCmdInfo::ServerTPS::*rate)
{
    const auto found = sockets.find(name);
    return found != sockets.end() ? found->second.*rate : 0;
}

} // namespace

SystemCmdInfo::SystemCmdInfo() : m_StartTick(zet::getTimeTick()) {}

SystemCmdInfo::~SystemCmdInfo() = default;

void SystemCmdInfo::Tick(unsigned long elapsedMs)
{
    tick(m_Process, elapsedMs);
    for (auto& [name, socket] : m_SocketTPS)
        tick(socket, elapsedMs);
}

void SystemCmdInfo::AddCmd(CCmdHead* cmd)
{
    if (cmd)
        m_CmdStart[cmd->GetClientAddress()] = zet::getTimeTick();
}

void SystemCmdInfo::EndCmd(CCmdHead* cmd)
{
    if (!cmd)
        return;
    const auto started = m_CmdStart.find(cmd->GetClientAddress());
    if (started == m_CmdStart.end())
        return;
    PushCmdOverhead(cmd->GetID(), ticksSince(started->second));
    m_CmdStart.erase(started);
}

void SystemCmdInfo::PushCmdOverhead(int, unsigned long) {}

void SystemCmdInfo::AddConnect()
{
    m_ConnectCount = sum32(m_ConnectCount, 1);
}

void SystemCmdInfo::DelConnect()
{
    m_ConnectCount = sum32(m_ConnectCount, -1);
}

SystemCmdInfo::ServerTPS& SystemCmdInfo::SocketOf(zet::String_T<wchar_t> name)
{
    if (name.isEmpty())
        name = kUnknownSocket;
    const auto [place, isNew] = m_SocketTPS.try_emplace(std::move(name));
    if (isNew)
        place->second.m_Period = kPeriod;
    return place->second;
}

void SystemCmdInfo::AddRecvCmd(zet::String_T<wchar_t> name, int bytes)
{
    ServerTPS& socket = SocketOf(std::move(name));
    socket.m_RecvBytes = sum32(socket.m_RecvBytes, static_cast<unsigned int>(bytes));
    socket.m_RecvCount = sum32(socket.m_RecvCount, 1UL);
}

void SystemCmdInfo::AddSendCmd(zet::String_T<wchar_t> name, int bytes)
{
    ServerTPS& socket = SocketOf(std::move(name));
    socket.m_SendBytes = sum32(socket.m_SendBytes, static_cast<unsigned int>(bytes));
    socket.m_SendCount = sum32(socket.m_SendCount, 1UL);
}

void SystemCmdInfo::SetCmdQuery(int count, unsigned long query, int al, int ml, int d1, int d2)
{
    m_CmdOperation.m_Count = count;
    m_CmdOperation.m_Query = static_cast<unsigned int>(query);
    m_CmdOperation.m_Al = al;
    m_CmdOperation.m_Ml = ml;
    m_CmdOperation.m_D1 = d1;
    m_CmdOperation.m_D2 = d2;
}

void SystemCmdInfo::GetCmdOperation(int& count, unsigned long& query, int& al, int& ml, int& d1, int& d2)
{
    count = m_CmdOperation.m_Count;
    query = m_CmdOperation.m_Query;
    al = m_CmdOperation.m_Al;
    ml = m_CmdOperation.m_Ml;
    d1 = m_CmdOperation.m_D1;
    d2 = m_CmdOperation.m_D2;
}

zet::TimeSpan SystemCmdInfo::GetRunningSpan()
{
    return zet::TimeSpan(static_cast<long long>(ticksSince(m_StartTick) / 1000));
}

int SystemCmdInfo::GetAllRecvSize()
{
    return roundedKiB(sumOf(m_SocketTPS, &ServerTPS::m_RecvRate));
}

int SystemCmdInfo::GetAllSendSize()
{
    return roundedKiB(sumOf(m_SocketTPS, &ServerTPS::m_SendRate));
}

int SystemCmdInfo::GetSocketRecvSize(const zet::String_T<wchar_t>& name)
{
    return roundedKiB(rateOf(m_SocketTPS, name, &ServerTPS::m_RecvRate));
}

int SystemCmdInfo::GetSocketSendSize(const zet::String_T<wchar_t>& name)
{
    return roundedKiB(rateOf(m_SocketTPS, name, &ServerTPS::m_SendRate));
}

zet::String_T<wchar_t> SystemCmdInfo::ToJsonString()
{
    zet::JsonValue document;
    document[kMem] = m_Process.m_MemoryMB;
    document[kTick] = m_Process.m_TickTime;
    document[kConnect] = m_ConnectCount;
    zet::JsonValue& operation = document[kCmdsOp];
    operation[kCount] = m_CmdOperation.m_Count;
    operation[kQuery] = m_CmdOperation.m_Query;
    operation[kAl] = m_CmdOperation.m_Al;
    operation[kMl] = m_CmdOperation.m_Ml;
    operation[kD1] = m_CmdOperation.m_D1;
    operation[kD2] = m_CmdOperation.m_D2;
    for (const auto& [name, socket] : m_SocketTPS)
    {
        zet::JsonValue element;
        element[kSocket] = name;
        element[kRecvSize] = socket.m_RecvRate;
        element[kSendSize] = socket.m_SendRate;
        zet::JsonValue& sockets = document[kServerTPS];
        sockets[sockets.size()] = std::move(element);
    }
    return zet::Json::convertToString(document, false);
}

void SystemCmdInfo::FromJsonString(const zet::String_T<wchar_t>& text)
{
    zet::JsonValue parsed;
    const wchar_t* const end = zet::Json::parseValue(text, parsed);
    if (parsed.isNull() || (!parsed.isObject() && !isBlank(end)))
        return;
    const zet::JsonValue& document = parsed;
    m_Process.m_MemoryMB = OptInt(document, kMem);
    m_Process.m_TickTime = OptDWORD(document, kTick);
    m_ConnectCount = OptInt(document, kConnect);
    const zet::JsonValue& operation = document[kCmdsOp];
    SetCmdQuery(OptInt(operation, kCount), OptDWORD(operation, kQuery), OptInt(operation, kAl), OptInt(operation, kMl),
                OptInt(operation, kD1), OptInt(operation, kD2));
    const zet::JsonValue& sockets = document[kServerTPS];
    if (!sockets.isArray())
        return;
    for (int i = 0; i < sockets.size(); ++i)
    {
        ServerTPS socket;
        socket.m_RecvRate = OptDWORD(sockets[i], kRecvSize);
        socket.m_SendRate = OptDWORD(sockets[i], kSendSize);
        m_SocketTPS[OptString(sockets[i], kSocket)] = socket;
    }
}

int SystemCmdInfo::OptInt(const zet::JsonValue& object, const wchar_t* key)
{
    return object[key].asInt32();
}

unsigned long SystemCmdInfo::OptDWORD(const zet::JsonValue& object, const wchar_t* key)
{
    const unsigned long long value = object[key].asUInt64();
    return value <= 0xFFFFFFFF ? static_cast<unsigned long>(value) : 0;
}

float SystemCmdInfo::OptFloat(const zet::JsonValue& object, const wchar_t* key)
{
    return object[key].asFloat();
}

zet::String_T<wchar_t> SystemCmdInfo::OptString(const zet::JsonValue& object, const wchar_t* key)
{
    return object[key].asString();
}

// Not all envelopes: those of wizard, purchase, profiling and sport are not grouped.
int SystemCmdInfo::GetCmdSecondLevelType(CCmdHead* cmd)
{
    if (!cmd)
        return 0;
    switch (cmd->GetID())
    {
    case command_id::CCmdVoidDataRequest:
    case command_id::CCmdVoidDataReply:
    case command_id::CCmdMatchPackRequest:
    case command_id::CCmdMatchPackReply:
    case command_id::CCmdHomePackRequest:
    case command_id::CCmdHomePackReply:
    case command_id::CCmdWorldSquarePackRequest:
    case command_id::CCmdWorldSquarePackReply:
    case command_id::CCmdChangingRoomPackRequest:
    case command_id::CCmdChangingRoomPackReply:
    case command_id::CCmdTravelWorldPackRequest:
    case command_id::CCmdTravelWorldPackReply:
    case command_id::CCmdFriendSystemPackRequest:
    case command_id::CCmdFriendSystemPackReply:
    case command_id::CCmdAchievementPackRequest:
    case command_id::CCmdAchievementPackReply:
        // An id may be shared with another class, so the class decides whether the field exists.
        if (const auto* envelope = dynamic_cast<const CCmdPackEnvelope*>(cmd))
            return envelope->m_PackType;
        if (const auto* envelope = dynamic_cast<const CCmdVoidDataEnvelope*>(cmd))
            return envelope->m_PackType;
        return 0;
    default:
        return 0;
    }
}
