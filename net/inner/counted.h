// Reference-counted objects of one reactor. The count is not atomic: only the reactor's thread uses it.
#pragma once

#include <utility>

namespace zet::inner
{

template <class T>
class Counted
{
public:
    void addRef() { ++m_Count; }
    void release()
    {
        if (--m_Count == 0)
            delete static_cast<T*>(this);
    }

private:
    int m_Count = 0;
};

// A reference to a counted object.
template <class T>
class Ref
{
public:
    Ref() = default;
    explicit Ref(T* object) : m_Object(object)
    {
        if (m_Object)
            m_Object->addRef();
    }
    // Takes over a reference that addRef() has counted already.
    static Ref adopt(T* object)
    {
        Ref made;
        made.m_Object = object;
        return made;
    }
    Ref(const Ref& other) : Ref(other.m_Object) {}
    Ref(Ref&& other) noexcept : m_Object(std::exchange(other.m_Object, nullptr)) {}
    Ref& operator=(Ref other) noexcept
    {
        std::swap(m_Object, other.m_Object);
        return *this;
    }
    ~Ref()
    {
        if (m_Object)
            m_Object->release();
    }
    T* get() const { return m_Object; }
    T* operator->() const { return m_Object; }
    explicit operator bool() const { return m_Object != nullptr; }

private:
    T* m_Object = nullptr;
};

} // namespace zet::inner
