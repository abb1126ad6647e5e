// Runs a service in this process, with steps that a test takes in its ticks. By the test clock: its sleeps take no
// time.
#pragma once

#include "host/service.h"
#include "tests/support/simulated_sleep.h"

#include <functional>
#include <string>
#include <vector>

namespace test
{

class ServiceSteps : public zet::System::Task
{
public:
    explicit ServiceSteps(host::Service& service) : m_Service(service)
    {
        // Before a run, which begins to use the door.
        zet::inner::setDoor(m_Service.getSystem(), std::make_shared<SleepingDoor>(m_Clock));
        m_Service.onStart([this] { return start(&m_Service.getSystem()); });
    }
    // Called once per tick until it returns true; then the next step's turn begins.
    void add(std::function<bool()> step) { m_Steps.push_back(std::move(step)); }
    // The exit code of the service. A test whose steps do not end shuts the service down after many ticks.
    int run(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), "program");
        std::vector<char*> words;
        for (std::string& each : options)
            words.push_back(each.data());
        const int code = m_Service.run(static_cast<int>(words.size()), words.data());
        stop();
        return code;
    }
    bool areDone() const { return m_Next == m_Steps.size(); }

    void onTick(unsigned int) override
    {
        if (!areDone() && m_Steps[m_Next]())
            ++m_Next;
        if (++m_Ticks > kMostTicks)
            m_Service.getSystem().shutdown();
    }

private:
    static constexpr int kMostTicks = 100000;

    zet::TestClock m_Clock{zet::time(nullptr), 1000};
    host::Service& m_Service;
    std::vector<std::function<bool()>> m_Steps;
    size_t m_Next = 0;
    int m_Ticks = 0;
};

} // namespace test
