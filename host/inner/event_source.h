// What the event stream of a service sends, as text/event-stream: named texts that are asked for while anyone reads.
#pragma once

#include "framework/export.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace host::inner
{

// Asks for each text once for all readers. A reader gets the texts that it does not have yet, each as a whole.
class COMMONGROUND_API EventSource
{
public:
    // Milliseconds between two rounds of questions.
    static constexpr unsigned int kInterval = 250;
    // Bytes of a text. A longer one is not sent; the log names it once.
    static constexpr size_t kMostText = 64 * 1024;

    using Text = std::function<std::string()>;

    // A name without line ends.
    void add(const char* name, Text text);
    bool isEmpty() const { return m_Entries.empty(); }

    // There is a first reader again: the next round is due at once.
    void restart() { m_IsStarted = false; }
    // Asks for all texts if an interval has passed. A text whose callable throws stays as it was.
    void update(unsigned int tick);
    // Events of the texts that have changed since that round, 0 for all of them. Sets the round to the last one.
    std::string takeChanges(unsigned int& round) const;

private:
    struct Entry
    {
        std::string m_Name;
        Text m_Ask;
        // As an event; empty before the first round.
        std::string m_Event;
        // The round in which it has changed.
        unsigned int m_Round = 0;
        bool m_IsReported = false;
    };

    std::vector<Entry> m_Entries;
    bool m_IsStarted = false;
    unsigned int m_Next = 0;
    unsigned int m_Round = 0;
};

} // namespace host::inner
