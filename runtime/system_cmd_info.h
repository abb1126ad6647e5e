// The statistics of a server: connections, memory, tick length, the traffic of each named socket and a block of command
// query figures defined by the host.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "framework/time.h"
#include "framework/uuid.h"

#include <map>

class CCmdHead;
namespace zet
{
class JsonValue;
}

// It has no thread and no timer: the host calls Tick with the elapsed milliseconds, and the other operations as events
// occur. It belongs to the host's run thread and has no lock. Every unsigned long in it is a 32-bit value that wraps,
// whatever the platform's width.
class COMMONGROUND_API SystemCmdInfo
{
public:
    static constexpr unsigned long kPeriod = 60000;

    // The figures of the process.
    struct ProcessInfo
    {
        // Working set in MiB; 0 until the first period has ended.
        int m_MemoryMB = 0;
        // Ticks in the current period.
        int m_TickCount = 0;
        // Mean length of a tick in the last period, in milliseconds.
        unsigned long m_TickTime = 0;
        unsigned long m_Period = kPeriod;
        unsigned long m_Elapsed = 0;
    };

    // The block of command query figures. The host defines their meaning; the library stores them.
    struct CmdOperation
    {
        int m_Count = 0;
        int m_Al = 0;
        int m_Ml = 0;
        int m_D1 = 0;
        int m_D2 = 0;
        unsigned long m_Query = 0;
    };

    // The traffic of one socket: bytes and commands of the current period, bytes per second of the last finished one.
    struct ServerTPS
    {
        unsigned long m_RecvBytes = 0;
        unsigned long m_SendBytes = 0;
        unsigned long m_RecvRate = 0;
        unsigned long m_SendRate = 0;
        unsigned long m_RecvCount = 0;
        unsigned long m_SendCount = 0;
        // In milliseconds; a record with period 0 is for display only and is never ticked.
        unsigned long m_Period = 0;
        unsigned long m_Elapsed = 0;
    };

    // Notes the start of the running time.
    SystemCmdInfo();
    SystemCmdInfo(const SystemCmdInfo&) = default;
    SystemCmdInfo& operator=(const SystemCmdInfo&) = default;

    virtual ~SystemCmdInfo();
    // Advances the process's record and those of all sockets. A period ends with the tick that exceeds it; the figures
    // of the last period change only then.
    virtual void Tick(unsigned long elapsedMs);
    // Record the start and the end of a client's command. A client has one running command: another start replaces the
    // first, and an end without a start does nothing.
    virtual void AddCmd(CCmdHead* cmd);
    virtual void EndCmd(CCmdHead* cmd);

    // Count a connection, and its end.
    void AddConnect();
    void DelConnect();
    // Count one command of the given bytes. An empty name counts as "Unkown".
    void AddRecvCmd(zet::String_T<wchar_t> name, int bytes);
    void AddSendCmd(zet::String_T<wchar_t> name, int bytes);
    // Sets or returns the block of command query figures.
    void SetCmdQuery(int count, unsigned long query, int al, int ml, int d1, int d2);
    void GetCmdOperation(int& count, unsigned long& query, int& al, int& ml, int& d1, int& d2);

    // Connections counted now.
    int GetConnectCount() { return m_ConnectCount; }
    // MiB of memory, and the mean length of a tick in milliseconds, both of the last period; 0 before its end.
    int GetMemeryCost() { return m_Process.m_MemoryMB; }
    unsigned long GetTickTime() { return m_Process.m_TickTime; }
    // Whole seconds since construction; the underlying tick wraps after 49 days.
    zet::TimeSpan GetRunningSpan();
    // Rates in rounded KiB per second: of all sockets together, and of one; 0 for a name without a record.
    int GetAllRecvSize();
    int GetAllSendSize();
    int GetSocketRecvSize(const zet::String_T<wchar_t>& name);
    int GetSocketSendSize(const zet::String_T<wchar_t>& name);
    // The records of all sockets by name. Valid until an operation adds one.
    const std::map<zet::String_T<wchar_t>, ServerTPS>& GetServerTPSMap() const { return m_SocketTPS; }

    // The figures as one line of JSON:
    //   {"mem":5,"tick":16,"connect":2,"cmdsop":{"count":1,"query":2,"al":3,"ml":4,"d1":5,"d2":6},
    //    "servertps":[{"socket":"gate","recvsize":1536,"sendsize":0}]}
    // "servertps" is present only if there is a socket.
    zet::String_T<wchar_t> ToJsonString();
    // Sets the figures from such a document, which other text may follow. A text that neither starts with a complete
    // object nor is a JSON value as a whole, such as "404 page not found", changes nothing; nor does null. A key that
    // is missing, of another type or beyond 32 bits gives 0 or the empty text; unknown keys are ignored. A socket of
    // the document replaces the record of its name; other records stay.
    void FromJsonString(const zet::String_T<wchar_t>& text);

    // The inner type of a pack command, by which hosts group them; 0 for a null pointer, for a command of another id
    // and for an object that is not an envelope.
    static int GetCmdSecondLevelType(CCmdHead* cmd);

    int m_ConnectCount = 0;
    // zet::getTimeTick() at construction.
    unsigned long m_StartTick;
    ProcessInfo m_Process;
    CmdOperation m_CmdOperation;
    std::map<zet::String_T<wchar_t>, ServerTPS> m_SocketTPS;
    // The start of the running command, by the client's address.
    std::map<zet::Uuid, unsigned long> m_CmdStart;

private:
    static int OptInt(const zet::JsonValue& object, const wchar_t* key);
    static unsigned long OptDWORD(const zet::JsonValue& object, const wchar_t* key);
    static float OptFloat(const zet::JsonValue& object, const wchar_t* key);
    static zet::String_T<wchar_t> OptString(const zet::JsonValue& object, const wchar_t* key);

    // The record of a name, created if missing.
    ServerTPS& SocketOf(zet::String_T<wchar_t> name);
    // Reserved for a table of command costs; stores nothing.
    void PushCmdOverhead(int id, unsigned long ms);
};
