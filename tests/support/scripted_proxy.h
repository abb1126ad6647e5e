// A proxy that sends what a test specifies.
#pragma once

#include "framework/system.h"
#include "tests/support/loopback.h"
#include "tests/support/proxy_client.h"

namespace test
{

using Bytes = std::vector<unsigned char>;

inline constexpr const wchar_t* kHere = L"127.0.0.1";
inline constexpr const wchar_t* kTarget = L"10.1.2.3";
inline constexpr unsigned short kTargetPort = 0x1F90;
inline const Bytes kGreeting{5, 1, 0};
inline const Bytes kAccountGreeting{5, 1, 2};
inline const Bytes kRequest{5, 1, 0, 1, 10, 1, 2, 3, 0x1F, 0x90};
inline const Bytes kGranted{5, 0, 0, 1, 0, 0, 0, 0, 0, 0};

class ProxyServer : public zet::TcpServer
{
public:
    void onAccept() override
    {
        m_Stream = new zet::TcpStream;
        if (accept(m_Stream))
            m_Stream->start(getSystem());
    }

    zet::Unknown::Handle_T<zet::TcpStream> m_Stream;
};

// A client and its proxy.
struct Proxied
{
    explicit Proxied(CCmdAnalyserSocket* analyser = nullptr)
        : m_Proxy(new ProxyServer), m_Client(new ProxyClient(analyser))
    {
        m_System.init();
        m_Proxy->start(&m_System);
        m_Proxy->listen(0, 5);
        m_Client->start(&m_System);
    }
    ~Proxied()
    {
        m_Client->close();
        m_System.exit();
    }

    // Whether both ends of the proxy connection are established and the greeting was as expected.
    bool greets(const Bytes& greeting, const wchar_t* account = L"", const wchar_t* password = L"",
                const wchar_t* target = kTarget)
    {
        m_Client->SetProxy(kHere, m_Proxy->getPort(), account, password);
        return m_Client->connect(target, kTargetPort, false) &&
               tickUntil(m_System,
                         [this] { return m_Proxy->m_Stream && m_Proxy->m_Stream->getConnectionState() == 2; }) &&
               says(greeting);
    }
    // Whether the client sends these bytes next, and no more.
    bool says(const Bytes& bytes)
    {
        const int size = static_cast<int>(bytes.size());
        if (!tickUntil(m_System, [&] { return m_Proxy->m_Stream->available() >= size; }) || !isSilent(size))
            return false;
        Bytes got(bytes.size());
        return m_Proxy->m_Stream->read(got.data(), size) == size && got == bytes;
    }
    // Whether nothing was received except the known bytes.
    bool isSilent(int known = 0)
    {
        for (int i = 0; i < 3; ++i)
            m_System.tick();
        return m_Client->getOutputSize() == 0 && m_Proxy->m_Stream->available() == known;
    }
    // Sends these bytes as one piece; returns whether the client has read them.
    bool answer(const Bytes& bytes)
    {
        const int before = m_Client->m_Looks;
        return m_Proxy->m_Stream->send(bytes.data(), static_cast<int>(bytes.size())) > 0 &&
               tickUntil(m_System, [&] { return m_Client->m_Looks > before; });
    }
    std::wstring proxyName() const { return std::wstring(kHere) + L":" + std::to_wstring(m_Proxy->getPort()); }

    zet::System m_System;
    zet::Unknown::Handle_T<ProxyServer> m_Proxy;
    ProxyClientHandle m_Client;
    BothLogs m_Logs;
};

// The message of a user name and a password.
inline Bytes accountMessage(const Bytes& account, const Bytes& password)
{
    Bytes message{1, static_cast<unsigned char>(account.size())};
    message.insert(message.end(), account.begin(), account.end());
    message.push_back(static_cast<unsigned char>(password.size()));
    message.insert(message.end(), password.begin(), password.end());
    return message;
}

} // namespace test
