#include "runtime/service_system.h"

#include "framework/app.h"
#include "framework/log_module.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

namespace
{

// Records the calls of the file log module during a test.
struct Told
{
    std::vector<std::wstring> m_All;
    static std::atomic<Told*>& listener()
    {
        static std::atomic<Told*> told = nullptr;
        return told;
    }
    static void tell(const std::wstring& what)
    {
        if (Told* const told = listener())
            told->m_All.push_back(what);
    }

    Told()
    {
        static const zet::LogModule module = {zet::LogModule::kVersion,
                                              L"FileLog",
                                              [](const wchar_t* name, const wchar_t* value)
                                              { tell(std::wstring(name) + L"=" + value); },
                                              [] { tell(L"start"); },
                                              [] { tell(L"stop"); },
                                              [](long long, int, const wchar_t* line, int) { tell(line); },
                                              [](int) {},
                                              []() -> const wchar_t* { return nullptr; }};
        zet::registerLogModule(&module);
        zet::Log::flush(10000);
        listener() = this;
    }
    ~Told() { listener() = nullptr; }
};

class Service : public CMyServiceSystem
{
public:
    explicit Service(unsigned char type) : CMyServiceSystem(type) {}

    bool init() override
    {
        m_Notes += "init ";
        return CMyServiceSystem::init();
    }
    void exit() override
    {
        m_Notes += "exit ";
        CMyServiceSystem::exit();
    }
    bool ServiceOn() override
    {
        m_Notes += "on ";
        return CMyServiceSystem::ServiceOn();
    }
    void ServiceOff() override
    {
        m_Notes += "off ";
        CMyServiceSystem::ServiceOff();
    }
    void onTick(unsigned int) override
    {
        m_Notes += "tick ";
        if (m_InTick)
            m_InnerInit = CMyServiceSystem::init();
        shutdown();
    }

    using CMyServiceSystem::m_ServerId;
    using CMyServiceSystem::m_ServerType;
    using CMyServiceSystem::m_Yield;
    std::string m_Notes;
    bool m_InTick = false;
    bool m_InnerInit = true;
};

TEST(MyServiceSystem, HasItsTypeAndAnIdentifierOfItsOwn)
{
    const Service one(7);
    const Service two(7);
    EXPECT_EQ(one.GetServerType(), 7);
    EXPECT_FALSE(one.GetServerId().isNull());
    EXPECT_FALSE(one.GetServerId() == two.GetServerId());
    EXPECT_EQ(&one.GetServerId(), &one.m_ServerId);
    EXPECT_TRUE(one.m_Yield.isNull());
    EXPECT_TRUE(zet::String_T<wchar_t>(one.getClassTimestamp()) == L"Mon Dec  9 15:18:50 2019");
}

TEST(MyServiceSystem, TheTypeDirectlyPrecedesTheIdentifier)
{
    const Service service(7);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(&service.m_ServerId) - 1, &service.m_ServerType);
}

TEST(MyServiceSystem, GeneratesNewIdentifiers)
{
    Service service(1);
    const zet::Uuid first = service.GenerateId();
    EXPECT_FALSE(first == service.GenerateId());
    EXPECT_FALSE(first == service.GetServerId());
}

TEST(MyServiceSystem, RunsFromOnToOff)
{
    test::LogLines lines;
    Service service(1);
    EXPECT_TRUE(service.run());
    EXPECT_EQ(service.m_Notes, "init on tick exit off ");
    EXPECT_FALSE(service.m_Yield.isNull());
    EXPECT_EQ(service.m_Yield->getSystem(), &service);
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{L"Service On...", L"Service Off..."}));
    EXPECT_TRUE(lines.has(zet::Log::kMessage, L"Service On..."));
}

TEST(MyServiceSystem, TheLogGoesBelowTheSystemsNameAndStopsBeforeTheServiceIsOff)
{
    Service service(1);
    service.setSystemName(L"game");
    const Told told;
    EXPECT_TRUE(service.run());
    const std::wstring path = std::wstring(L"path=") + zet::getAppPath().getBuffer() + L"log/game/";
    EXPECT_EQ(told.m_All, (std::vector<std::wstring>{L"start", path, L"Service On...", L"stop"}));
}

TEST(MyServiceSystem, AnInitThatFailsLeavesTheLogUnstarted)
{
    Service service(1);
    const Told told;
    // Within a tick the system refuses it.
    service.m_InTick = true;
    service.tick();
    EXPECT_FALSE(service.m_InnerInit);
    EXPECT_TRUE(told.m_All.empty());
    EXPECT_TRUE(service.m_Yield.isNull());
}

TEST(MyServiceSystem, ServiceOnIsTrueWhateverHappenedBefore)
{
    Service service(1);
    service.ServiceOff();
    EXPECT_TRUE(service.ServiceOn());
    EXPECT_TRUE(service.ServiceOn());
}

} // namespace
