// Subscriptions to objects by class, shared by events and messages.
#pragma once

#include "framework/unknown.h"

#include <deque>
#include <functional>

namespace zet
{

// A handler for objects of one class: a method of another object, which is not owned and must outlive the
// subscription.
template <class Subject>
class Handler_T
{
public:
    // The class of the objects is the one that the method takes.
    template <class Owner, class Base, class Kind>
    Handler_T(Owner* owner, void (Base::*method)(Kind*))
        : m_ClassId(Kind::getClassId_()), m_Call(
                                              [owner, method](Subject* subject)
                                              {
                                                  // Two class names may have the same number.
                                                  if (Kind* const kind = dynamic_cast<Kind*>(subject))
                                                      (owner->*method)(kind);
                                              })
    {
    }

    // The number of that class.
    unsigned long getClassId() const { return m_ClassId; }
    // Calls the method if the object is of that class.
    void call(Subject* subject) const { m_Call(subject); }

private:
    unsigned long m_ClassId;
    std::function<void(Subject*)> m_Call;
};

// Passes each object to the handlers of exactly its class, in the order of subscription; handlers of a base class are
// not called. Belongs to one thread. A handler may subscribe others, which get the next object.
template <class Subject>
class Dispenser_T
{
public:
    Dispenser_T() = default;
    Dispenser_T(const Dispenser_T&) = delete;
    Dispenser_T& operator=(const Dispenser_T&) = delete;

    // The subject must not be null. An exception from a handler goes to the caller, and later handlers are not called.
    void dispense(Subject* subject) const
    {
        const unsigned long classId = subject->getClassId();
        const size_t count = m_Handlers.size();
        for (size_t i = 0; i < count; ++i)
            if (m_Handlers[i].getClassId() == classId)
                m_Handlers[i].call(subject);
    }

protected:
    // Subscribes a handler, for as long as this object exists.
    void add(const Handler_T<Subject>& handler) { m_Handlers.push_back(handler); }

private:
    // Handlers keep their address when others are added.
    std::deque<Handler_T<Subject>> m_Handlers;
};

} // namespace zet
