// Subscriptions to objects by their class; what events and messages have in common.
#pragma once

#include "framework/unknown.h"

#include <deque>
#include <functional>

namespace zet
{

// What is to be called for an object of one class: a method of another object, which is not owned and outlives the
// subscription.
template <class Subject>
class Handler_T
{
public:
    template <class Owner, class Base, class Kind>
    Handler_T(Owner* owner, void (Base::*method)(Kind*))
        : m_ClassId(Kind::getClassId_()), m_Call(
                                              [owner, method](Subject* subject)
                                              {
                                                  // The names of two classes may give one number.
                                                  if (Kind* const kind = dynamic_cast<Kind*>(subject))
                                                      (owner->*method)(kind);
                                              })
    {
    }

    unsigned long getClassId() const { return m_ClassId; }
    void call(Subject* subject) const { m_Call(subject); }

private:
    unsigned long m_ClassId;
    std::function<void(Subject*)> m_Call;
};

// Hands each object to the handlers of its class, in the order of their subscription. An object of a derived class is
// not one of its base. Belongs to one thread; a handler may subscribe further ones, which see the next object.
template <class Subject>
class Dispenser_T
{
public:
    Dispenser_T() = default;
    Dispenser_T(const Dispenser_T&) = delete;
    Dispenser_T& operator=(const Dispenser_T&) = delete;

    // The subject is not null. What a handler throws goes to the caller, and the handlers behind it are not called.
    void dispense(Subject* subject) const
    {
        const unsigned long classId = subject->getClassId();
        const size_t count = m_Handlers.size();
        for (size_t i = 0; i < count; ++i)
            if (m_Handlers[i].getClassId() == classId)
                m_Handlers[i].call(subject);
    }

protected:
    void add(const Handler_T<Subject>& handler) { m_Handlers.push_back(handler); }

private:
    // Handlers keep their place when others come.
    std::deque<Handler_T<Subject>> m_Handlers;
};

} // namespace zet
