// A place for an observer in an object whose header does not include <memory>, which would double it.
#pragma once

#include <utility>

class CommandObserver;

// Holds an owning pointer of any kind, such as zet::SharedPtr<CommandObserver>. Copies share the observer as copies of
// that pointer do.
class ObserverSlot
{
public:
    constexpr ObserverSlot() = default;
    ObserverSlot(const ObserverSlot& other)
        : m_Observer(other.m_Observer), m_Owner(other.m_Owner ? other.m_Owner->copy() : nullptr)
    {
    }
    ObserverSlot& operator=(const ObserverSlot& other)
    {
        ObserverSlot copy(other);
        swap(copy);
        return *this;
    }
    ~ObserverSlot() { delete m_Owner; }

    // Throws std::bad_alloc and changes nothing then.
    template <class Pointer>
    void set(Pointer pointer)
    {
        ObserverSlot made;
        if ((made.m_Observer = pointer.get()))
            made.m_Owner = new OwnerBy<Pointer>(std::move(pointer));
        swap(made);
    }
    // Null for none.
    CommandObserver* get() const { return m_Observer; }

private:
    struct Owner
    {
        virtual ~Owner() = default;
        virtual Owner* copy() const = 0;
    };
    template <class Pointer>
    struct OwnerBy final : Owner
    {
        explicit OwnerBy(Pointer pointer) : m_Pointer(std::move(pointer)) {}
        Owner* copy() const override { return new OwnerBy(*this); }

        const Pointer m_Pointer;
    };

    void swap(ObserverSlot& other)
    {
        std::swap(m_Observer, other.m_Observer);
        std::swap(m_Owner, other.m_Owner);
    }

    CommandObserver* m_Observer = nullptr;
    const Owner* m_Owner = nullptr;
};
