#include "host/handlers.h"

#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/platform/class_name.h"
#include "packaging/cmd_packager.h"

#include <atomic>
#include <mutex>

namespace host
{

namespace
{

using zet::platform::getClassName;

// The rows that analysers refer to by number. Every thread that dispatches reads them without a lock, so a row is never
// moved or freed; a freed number gets another generation.
struct Row
{
    std::atomic<unsigned int> m_Generation{0};
    std::atomic<void*> m_Handler{nullptr};
    unsigned long m_NextFree = 0;
};

constexpr unsigned long kRowsPerBlock = 256;
constexpr unsigned long kBlocks = 1024;
constexpr unsigned long kNoRow = kBlocks * kRowsPerBlock;

constinit std::atomic<Row*> s_Blocks[kBlocks]{};
// Guarded by getLock().
constinit unsigned long s_Used = 0;
constinit unsigned long s_FirstFree = kNoRow;

// Never destroyed, since Handlers may be destroyed at the end of the process.
std::mutex& getLock()
{
    static std::mutex& lock = *new std::mutex;
    return lock;
}

// Null if no row with this number was ever made.
Row* rowOf(unsigned long number)
{
    if (number >= kNoRow)
        return nullptr;
    Row* const block = s_Blocks[number / kRowsPerBlock].load(std::memory_order_acquire);
    return block ? block + number % kRowsPerBlock : nullptr;
}

// A row for the handler, or kNoRow.
unsigned long takeRow(void* handler)
{
    const std::lock_guard lock(getLock());
    unsigned long number = s_FirstFree;
    if (number != kNoRow)
        s_FirstFree = rowOf(number)->m_NextFree;
    else if (s_Used == kNoRow)
        return kNoRow;
    else
    {
        if (s_Used % kRowsPerBlock == 0)
            s_Blocks[s_Used / kRowsPerBlock].store(new Row[kRowsPerBlock], std::memory_order_release);
        number = s_Used++;
    }
    Row* const row = rowOf(number);
    if (!row)
        return kNoRow;
    row->m_Handler.store(handler, std::memory_order_release);
    return number;
}

void giveBack(unsigned long number)
{
    const std::lock_guard lock(getLock());
    Row* const row = rowOf(number);
    if (!row)
        return;
    row->m_Generation.fetch_add(1, std::memory_order_release);
    row->m_Handler.store(nullptr, std::memory_order_release);
    row->m_NextFree = s_FirstFree;
    s_FirstFree = number;
}

} // namespace

namespace inner
{

void* findHandler(unsigned long row, unsigned long generation)
{
    const Row* const found = rowOf(row);
    if (!found || found->m_Generation.load(std::memory_order_acquire) != generation)
        return nullptr;
    return found->m_Handler.load(std::memory_order_acquire);
}

bool refuseCommand(const CCmdHead& command, const std::type_info& type, const CCmdPackager& pk, bool isRead,
                   CCommandSocket& socket)
{
    if (!zet::PeerLog::takesLine())
        return false;
    if (isRead)
        zet::Log::message(L"%s (0x%04x) refused: %d of %d bytes are left over (%s)", getClassName(type),
                          command.GetID(), pk.GetDataSize() - pk.GetReadPointer(), pk.GetDataSize(),
                          socket.getPeerName());
    else
        zet::Log::message(L"%s (0x%04x) refused: it does not fit %d bytes (%s)", getClassName(type), command.GetID(),
                          pk.GetDataSize(), socket.getPeerName());
    zet::Log::whistle(false);
    return false;
}

bool reportNoHandlers(const std::type_info& type, const CCmdPackager& pk, CCommandSocket& socket)
{
    if (zet::PeerLog::takesLine())
        zet::Log::error(L"%s (0x%04x) refused: its Handlers was destroyed (%s)", getClassName(type), pk.GetCmdID(),
                        socket.getPeerName());
    return false;
}

} // namespace inner

Handlers::Handlers(CCmdAnalyserSocket& analyser) : m_Analyser(analyser) {}

Handlers::~Handlers()
{
    for (const Installed& installed : m_Installed)
        giveBack(installed.m_Row);
}

bool Handlers::canInstall(unsigned short id, const std::type_info& type) const
{
    for (const Installed& installed : m_Installed)
        if (installed.m_Id == id)
        {
            zet::Log::error(L"Handlers: %s has the id 0x%04x, which has the handler of %s", getClassName(type), id,
                            getClassName(*installed.m_Type));
            return false;
        }
    if (id >= kCommandIdLimit)
    {
        zet::Log::error(L"Handlers: %s has the id 0x%04x, which is not below 0x%04x", getClassName(type), id,
                        kCommandIdLimit);
        return false;
    }
    return true;
}

bool Handlers::install(unsigned short id, const std::type_info& type, SocketCmdProcess process,
                       inner::OwnedHandler handler)
{
    if (!canInstall(id, type))
        return false;
    m_Installed.reserve(m_Installed.size() + 1);
    const unsigned long row = takeRow(handler.get());
    if (row == kNoRow)
    {
        zet::Log::error(L"Handlers: no space for the handler of %s: %lu exist", getClassName(type), kNoRow);
        return false;
    }
    m_Installed.push_back({id, &type, row, std::move(handler)});
    m_Analyser.Install(id, process, nullptr, row, rowOf(row)->m_Generation.load(std::memory_order_relaxed));
    return true;
}

} // namespace host
