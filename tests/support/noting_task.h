// A task that records its calls.
#pragma once

#include "framework/system.h"

#include <functional>
#include <string>

namespace test
{

// Each note is the task's name and a letter: i for init, . for a tick, e for exit, ~ for destruction.
class NotingTask : public zet::System::Task
{
public:
    explicit NotingTask(std::string* notes, char name = 't') : m_Notes(notes), m_Name(name) {}
    ~NotingTask() override { note('~'); }

    bool init() override
    {
        note('i');
        return m_IsReady;
    }
    void exit() override { note('e'); }
    void onTick(unsigned int tick) override
    {
        note('.');
        m_LastTick = tick;
        if (m_OnTick)
            m_OnTick();
    }

    void note(char what) { *m_Notes += m_Name, *m_Notes += what; }

    std::string* m_Notes;
    char m_Name;
    bool m_IsReady = true;
    unsigned int m_LastTick = 0;
    std::function<void()> m_OnTick;
};
using NotingHandle = zet::Unknown::Handle_T<NotingTask>;

} // namespace test
