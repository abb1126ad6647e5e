// A proxy client for tests, and its reports.
#pragma once

#include "framework/quillo/app_log.h"
#include "tests/support/log_lines.h"
#include "transport/framework_client_proxy_socket.h"

#include <functional>
#include <string>
#include <vector>

namespace test
{

class ProxyClient : public CFrameworkClientProxySocket
{
public:
    explicit ProxyClient(CCmdAnalyserSocket* analyser) : CFrameworkClientProxySocket(analyser) {}

    void onTick(unsigned int tick) override
    {
        const Handle_T<ProxyClient> keep = getRefCount() > 0 ? this : nullptr;
        const bool hadInput = isWorthReceiving();
        CFrameworkClientProxySocket::onTick(tick);
        m_Looks += hadInput;
    }
    void OnProxyWorking() override
    {
        ++m_Workings;
        m_StateThen = m_ProxyState;
        if (m_OnWorking)
            m_OnWorking();
    }

    using CFrameworkClientProxySocket::SendAccountCheck;
    using CFrameworkClientProxySocket::SendAccountID;
    using CFrameworkClientProxySocket::SendNoNameCheck;
    using CFrameworkClientProxySocket::SendTargetAddress;

    // Ticks that received something.
    int m_Looks = 0;
    int m_Workings = 0;
    int m_StateThen = -1;
    std::function<void()> m_OnWorking;
};
using ProxyClientHandle = zet::Unknown::Handle_T<ProxyClient>;

// Collects the lines of the process's log and of the engine's log during its lifetime.
class BothLogs
{
public:
    BothLogs()
    {
        Quillo::setAppLogSink([this](const zet::String_T<wchar_t>& line) { m_AppLines.emplace_back(line.view()); });
    }
    ~BothLogs() { Quillo::setAppLogSink(nullptr); }
    BothLogs(const BothLogs&) = delete;
    BothLogs& operator=(const BothLogs&) = delete;

    // The proxy socket's lines in the process's log, and whether the engine's log has the same.
    std::vector<std::wstring> lines() const
    {
        std::vector<std::wstring> all = allLines();
        std::erase_if(all, [](const std::wstring& line)
                      { return line.find(L"Connection with ") == 0 || line.find(L"Connect to ") == 0; });
        return all;
    }
    bool agree() const { return lines() == m_AppLines; }
    // With those about the ends of connections.
    std::vector<std::wstring> allLines() const { return m_Log.texts(); }
    bool areMessages() const
    {
        for (const std::wstring& line : m_AppLines)
            if (!m_Log.has(zet::Log::kMessage, line))
                return false;
        return true;
    }

private:
    LogLines m_Log;
    std::vector<std::wstring> m_AppLines;
};

} // namespace test
