// Events: objects that report to their subscribers what happened.
#pragma once

#include "framework/dispenser.h"

namespace zet
{

// The base of all events. An event lives only during the call that reports it, unless a handle holds it.
class COMMONGROUND_API Event : public virtual Unknown
{
};

// A handler for events of one class: EventHandler(this, &Host::onClosed) for
// void Host::onClosed(const Evt_NetClosed*). A virtual method is called virtually.
using EventHandler = Handler_T<const Event>;

// Passes events to their subscribers, as Dispenser_T says.
class EventDispenser : public Dispenser_T<const Event>
{
public:
    // Subscribes a handler for as long as the dispenser exists; the owner of its method must live as long.
    void addEventHandler(const EventHandler& handler) { add(handler); }
};

} // namespace zet
