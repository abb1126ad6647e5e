#include "host/registration.h"

#include "host/inner/registration_parts.h"

namespace host
{

Registration::Registration(zet::System& system) : m_Parts(std::make_shared<inner::RegistrationParts>(system)) {}

Registration::~Registration()
{
    m_Parts->stop();
}

void Registration::setRecord(const CCmdServerRegister& record)
{
    m_Parts->setRecord(record);
}

const CCmdServerRegister& Registration::getRecord() const
{
    return m_Parts->m_Record;
}

void Registration::onServer(ServerCall call)
{
    m_Parts->m_OnServer = std::move(call);
}

void Registration::onGone(ServerCall call)
{
    m_Parts->m_OnGone = std::move(call);
}

void Registration::onShutdown(std::function<void()> call)
{
    m_Parts->m_OnShutdown = std::move(call);
}

void Registration::onRegistered(std::function<void()> call)
{
    m_Parts->m_OnRegistered = std::move(call);
}

bool Registration::acceptGreetings(Handlers& handlers)
{
    return handlers.on<CCmdServerHello>(
        [weak = std::weak_ptr<inner::RegistrationParts>(m_Parts)](CCommandSocket& socket, const CCmdServerHello& hello)
        {
            if (const auto parts = weak.lock())
                parts->onHello(socket, hello);
        });
}

void Registration::setGreetingCheck(GreetingCheck check)
{
    m_Parts->m_GreetingCheck = std::move(check);
}

bool Registration::start(const wchar_t* address, unsigned short port)
{
    return m_Parts->start(address, port);
}

void Registration::stop()
{
    m_Parts->stop();
}

bool Registration::isRegistered() const
{
    return m_Parts->m_IsRegistered;
}

const CCmdServerRegister* Registration::find(unsigned char type) const
{
    for (const auto& server : m_Parts->m_Servers)
        if (server.m_Record.m_ServerType == type)
            return &server.m_Record;
    return nullptr;
}

void Registration::forEach(const ServerCall& call) const
{
    for (const auto& server : m_Parts->m_Servers)
        call(server.m_Record);
}

int Registration::getCount() const
{
    return static_cast<int>(m_Parts->m_Servers.size());
}

} // namespace host
