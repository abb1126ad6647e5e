#include "runtime/service_system.h"

#include "framework/app.h"
#include "framework/log.h"
#include "framework/module.h"

CMyServiceSystem::CMyServiceSystem(unsigned char serverType) : m_ServerType(serverType), m_ServerId(GenerateId())
{
    zet::DllModule::createInstance()->load(L"zet_ConsoleLog.dll");
    zet::DllModule::createInstance()->load(L"zet_FileLog.dll");
}

CMyServiceSystem::~CMyServiceSystem()
{
    if (m_Yield)
        m_Yield->detach();
}

zet::Uuid CMyServiceSystem::GenerateId()
{
    zet::Uuid id;
    zet::uuid_create(id);
    return id;
}

bool CMyServiceSystem::init()
{
    if (!zet::System::init())
        return false;
    zet::Log::start();
    zet::Log::setparam(zet::String_T<wchar_t>(L"FileLog@path=") + getLogFolder());
    m_Yield = zet::Yield::createInstance();
    m_Yield->attach(this);
    return true;
}

zet::String_T<wchar_t> CMyServiceSystem::getLogFolder() const
{
    return zet::getAppPath() + L"log/" + getSystemName() + L"/";
}

void CMyServiceSystem::exit()
{
    zet::Log::stop();
    ServiceOff();
    // Not ServiceSystem::exit(), which would call ServiceOff() again.
    zet::System::exit();
}

bool CMyServiceSystem::ServiceOn()
{
    zet::Log::message(L"Service On...");
    return true;
}

void CMyServiceSystem::ServiceOff()
{
    zet::Log::message(L"Service Off...");
}

const wchar_t* CMyServiceSystem::getClassTimestamp() const
{
    return L"Mon Dec  9 15:18:50 2019";
}
