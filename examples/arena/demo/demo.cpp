// The registry's nine steps, each played with real processes and checked.
#include "examples/arena/command_line.h"
#include "examples/arena/demo/actor.h"
#include "examples/arena/lines.h"
#include "examples/arena/roles.h"
#include "examples/arena/text.h"

#include <utility>

namespace arena
{

namespace
{

// A service of the demonstration, and what it has printed about itself.
struct ServiceActor : Actor
{
    ServiceActor(const char* name, const char* type) : Actor(name), m_Type(type) {}
    std::string m_Type;
    std::string m_Port;
    std::string m_Id;
};

class Demo
{
public:
    bool play();

private:
    struct Step
    {
        const char* m_Title;
        void (Demo::*m_Play)();
    };
    static const Step kSteps[];

    void startRegistry();
    void startServices();
    void greetEachOther();
    void measureEchoes();
    void lookEachUp();
    void refuseSecondRegistration();
    void killOne();
    void letOneLeave();
    void shutAllDown();

    // Runs a process to its end and returns it for its lines.
    Actor run(const char* name, const std::vector<std::string>& words, int result);
    void expectLookup(const ServiceActor& service);
    void expectNoLookup(const ServiceActor& service);
    void expectNoticeOf(const ServiceActor& gone, ServiceActor& told);

    Actor m_Registry{"registry"};
    std::string m_RegistryPort;
    ServiceActor m_Alpha{"alpha", "1"};
    ServiceActor m_Beta{"beta", "2"};
    ServiceActor m_Gamma{"gamma", "3"};
};

const Demo::Step Demo::kSteps[] = {
    {"start a registry", &Demo::startRegistry},
    {"start three services, which register", &Demo::startServices},
    {"the earlier services greet the later ones", &Demo::greetEachOther},
    {"measure echo round trips to the registry", &Demo::measureEchoes},
    {"look each service up", &Demo::lookEachUp},
    {"register a live id a second time", &Demo::refuseSecondRegistration},
    {"kill a service; the others are notified", &Demo::killOne},
    {"let a service unregister; the other is notified", &Demo::letOneLeave},
    {"shut all down", &Demo::shutAllDown},
};

bool Demo::play()
{
    const int count = static_cast<int>(std::size(kSteps));
    for (int i = 0; i < count; ++i)
    {
        const Step& step = kSteps[i];
        say("[%d/%d] %s", i + 1, count, step.m_Title);
        try
        {
            (this->*step.m_Play)();
        }
        catch (const Failure& failure)
        {
            for (Actor* actor : std::initializer_list<Actor*>{&m_Registry, &m_Alpha, &m_Beta, &m_Gamma})
                actor->showLines();
            say("demo: step %d of %d failed (%s): %s", i + 1, count, step.m_Title, failure.what());
            return false;
        }
    }
    say("demo: all %d steps done", count);
    return true;
}

void Demo::startRegistry()
{
    m_Registry.start({"registry", "--port", "0"});
    m_RegistryPort = m_Registry.expect(lines::kListening);
    say("      the registry listens on port %s", m_RegistryPort.c_str());
}

void Demo::startServices()
{
    for (ServiceActor* service : {&m_Alpha, &m_Beta, &m_Gamma})
    {
        service->start(
            {"service", "--type", service->m_Type, "--name", service->getName(), "--registry", m_RegistryPort});
        service->m_Port = service->expect(lines::kListening);
        service->m_Id = service->expect(lines::kAccepted);
        m_Registry.expect(lines::kRegistered + service->getName() + " ");
        say("      %s (type %s) listens on port %s, registered under %s", service->getName().c_str(),
            service->m_Type.c_str(), service->m_Port.c_str(), service->m_Id.c_str());
    }
}

void Demo::greetEachOther()
{
    const std::pair<ServiceActor*, ServiceActor*> pairs[] = {
        {&m_Alpha, &m_Beta}, {&m_Alpha, &m_Gamma}, {&m_Beta, &m_Gamma}};
    for (const auto& [earlier, later] : pairs)
    {
        earlier->expect(lines::kNew + later->getName() + " ");
        const std::string answer = earlier->expect(lines::kGreeted + later->getName() + " ");
        say("      %s greeted %s %s", earlier->getName().c_str(), later->getName().c_str(), answer.c_str());
    }
}

void Demo::measureEchoes()
{
    for (ServiceActor* service : {&m_Alpha, &m_Beta, &m_Gamma})
    {
        const std::string figures = service->expect(lines::kEcho);
        say("      %s: %s", service->getName().c_str(), figures.c_str());
    }
}

void Demo::lookEachUp()
{
    for (const ServiceActor* service : {&m_Alpha, &m_Beta, &m_Gamma})
        expectLookup(*service);
}

void Demo::refuseSecondRegistration()
{
    Actor twin = run(
        "twin",
        {"service", "--type", m_Alpha.m_Type, "--name", "twin", "--registry", m_RegistryPort, "--id", m_Alpha.m_Id}, 1);
    const std::string reason = twin.expect(lines::kRejected);
    m_Registry.expect(std::string(lines::kRefused) + "twin ");
    say("      a twin with alpha's id is refused: %s", reason.c_str());
    // The first one is untouched.
    expectLookup(m_Alpha);
}

void Demo::killOne()
{
    m_Beta.kill();
    m_Registry.expect(lines::kGone + m_Beta.getName() + " ");
    say("      beta is killed");
    expectNoticeOf(m_Beta, m_Alpha);
    expectNoticeOf(m_Beta, m_Gamma);
    expectNoLookup(m_Beta);
}

void Demo::letOneLeave()
{
    run("shutdown", {"shutdown", "--service", m_Gamma.m_Port}, 0);
    m_Registry.expect(lines::kUnregistered + m_Gamma.getName() + " ");
    m_Gamma.expect(lines::kLeft);
    m_Gamma.expectEnd(0);
    say("      gamma has unregistered and ended with 0");
    expectNoticeOf(m_Gamma, m_Alpha);
    expectNoLookup(m_Gamma);
}

void Demo::shutAllDown()
{
    run("shutdown", {"shutdown", "--registry", m_RegistryPort}, 0);
    m_Alpha.expect(lines::kLeft);
    m_Alpha.expectEnd(0);
    say("      alpha has ended with 0");
    m_Registry.expect(lines::kShuttingDown);
    m_Registry.expectEnd(0);
    say("      the registry has ended with 0");
    // The refused duplicate was not announced, and no server was notified twice.
    const int told = m_Alpha.count(lines::kFade);
    if (told != 2)
        throw Failure("alpha was notified of " + std::to_string(told) + " fades, not of 2");
}

Actor Demo::run(const char* name, const std::vector<std::string>& words, int result)
{
    Actor actor(name);
    actor.start(words);
    actor.expectEnd(result);
    return actor;
}

void Demo::expectLookup(const ServiceActor& service)
{
    Actor lookup = run("lookup", {"lookup", "--type", service.m_Type, "--registry", m_RegistryPort}, 0);
    const std::string address = lookup.expect(lines::kFound);
    const std::string expected = "127.0.0.1:" + service.m_Port;
    if (address != expected)
        throw Failure("type " + service.m_Type + " is at " + expected + ", the lookup says " + address);
    say("      type %s is at %s", service.m_Type.c_str(), address.c_str());
}

void Demo::expectNoLookup(const ServiceActor& service)
{
    Actor lookup = run("lookup", {"lookup", "--type", service.m_Type, "--registry", m_RegistryPort}, 1);
    lookup.expect(lines::kNone);
    say("      no server of type %s is left", service.m_Type.c_str());
}

void Demo::expectNoticeOf(const ServiceActor& gone, ServiceActor& told)
{
    told.expect(lines::kFade + gone.getName() + " ");
    say("      %s was notified that %s has left", told.getName().c_str(), gone.getName().c_str());
}

} // namespace

int runDemo(int count, char** words)
{
    CLI::App app("Plays the registry with processes of its own.");
    if (const auto result = parseWords(app, count, words))
        return *result;
    return Demo().play() ? 0 : 1;
}

} // namespace arena
