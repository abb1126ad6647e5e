// Events: what happened to an object, told to those who subscribed.
#pragma once

#include "framework/dispenser.h"

namespace zet
{

// The base of all events. An event lives as long as the call that tells it, unless a handle holds it.
class COMMONGROUND_API Event : public virtual Unknown
{
};

// A method that gets the events of one class: EventHandler(this, &Host::onClosed) for
// void Host::onClosed(const Evt_NetClosed*). A virtual method is called as such.
using EventHandler = Handler_T<const Event>;

class EventDispenser : public Dispenser_T<const Event>
{
public:
    void addEventHandler(const EventHandler& handler) { add(handler); }
};

} // namespace zet
