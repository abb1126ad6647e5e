// A door whose sleeps take no time: one that nothing ends advances the test clock by the time that it was to take.
#pragma once

#include "framework/time.h"
#include "tests/support/passing_door.h"

#include <chrono>
#include <memory>

namespace test
{

class SleepingDoor : public PassingDoor
{
public:
    explicit SleepingDoor(zet::TestClock& clock) : m_Clock(clock) {}

    std::unique_ptr<zet::inner::Poller> makePoller() override
    {
        return std::make_unique<SleepingPoller>(*this, PassingDoor::makePoller());
    }

    // The sleeps, and those that an event ended at once.
    int m_Sleeps = 0;
    int m_Ended = 0;

private:
    // Notes the events of one socket, and passes them on.
    struct NotingWatch final : zet::inner::Watch
    {
        NotingWatch(bool& hasEvents, zet::inner::Watch& watch) : m_HasEvents(hasEvents), m_Watch(watch) {}
        void onReady(unsigned char ready) override
        {
            m_HasEvents = true;
            m_Watch.onReady(ready);
        }

        bool& m_HasEvents;
        zet::inner::Watch& m_Watch;
    };

    class SleepingPoller : public zet::inner::Poller
    {
    public:
        SleepingPoller(SleepingDoor& door, std::unique_ptr<Poller> poller) : m_Door(door), m_Poller(std::move(poller))
        {
        }
        bool add(Handle handle, zet::inner::Watch& watch, unsigned char ready) override
        {
            auto& noting = m_Watches[&watch];
            noting = std::make_unique<NotingWatch>(m_HasEvents, watch);
            return m_Poller->add(handle, *noting, ready);
        }
        void want(zet::inner::Watch& watch, unsigned char ready) override
        {
            m_Poller->want(*m_Watches.at(&watch), ready);
        }
        void reportInputAgain(zet::inner::Watch& watch) override { m_Poller->reportInputAgain(*m_Watches.at(&watch)); }
        void remove(zet::inner::Watch& watch) override
        {
            m_Poller->remove(*m_Watches.at(&watch));
            m_Watches.erase(&watch);
        }
        bool wait(std::chrono::microseconds time) override
        {
            m_HasEvents = false;
            const bool isGood = m_Poller->wait(std::chrono::microseconds(0));
            if (time.count() == 0)
                return isGood;
            ++m_Door.m_Sleeps;
            if (m_HasEvents)
                ++m_Door.m_Ended;
            else
                m_Door.m_Clock.advance(
                    static_cast<unsigned int>(std::chrono::ceil<std::chrono::milliseconds>(time).count()));
            return isGood;
        }
        void wake() override { m_Poller->wake(); }

    private:
        SleepingDoor& m_Door;
        const std::unique_ptr<Poller> m_Poller;
        std::map<zet::inner::Watch*, std::unique_ptr<NotingWatch>> m_Watches;
        bool m_HasEvents = false;
    };

    zet::TestClock& m_Clock;
};

} // namespace test
