// The base of all reference-counted objects, and their handle.
#pragma once

#include "framework/export.h"
#include "framework/uuid.h"

#include <atomic>
#include <type_traits>
#include <utility>

namespace zet
{

class InputStream;
class OutputStream;

// An object that lives as long as a handle holds it. Counting is thread-safe; the object itself is not.
// An object on the stack or inside another must outlive every handle to it, and its owner must hold a count on it, so
// that the last handle does not delete it.
class COMMONGROUND_API Unknown
{
public:
    template <class T>
    class Handle_T;
    struct RtFactory;

    Unknown() = default;
    // The count belongs to the object: copies and assignments do not change it.
    Unknown(const Unknown&) {}
    Unknown& operator=(const Unknown&) { return *this; }
    virtual ~Unknown();

    // Count the handles of the object; the last release() destroys it. Handles call them. Any thread.
    void addRef() const { m_Count.fetch_add(1, std::memory_order_relaxed); }
    void release() const
    {
        if (m_Count.fetch_sub(1, std::memory_order_acq_rel) == 1)
            destroy();
    }
    // The number of handles now. Other threads may change it meanwhile.
    int getRefCount() const { return m_Count.load(std::memory_order_relaxed); }

    // A copy of the object, or null if the class cannot be copied. The caller must put it into a handle.
    virtual Unknown* clone() const { return nullptr; }
    // The name of the class, by which Unknown::RtFactory knows it.
    virtual const wchar_t* getClassName() const { return L"zet::Unknown"; }
    // The number of the class, computed from its name; equal in all processes.
    virtual unsigned long getClassId() const;
    // A new default-constructed object of the same class, or null.
    virtual Unknown* rtCreateInstance() const { return nullptr; }
    // A constant text that names the release of the class.
    virtual const wchar_t* getClassTimestamp() const { return L""; }
    // Reads and writes the object's fields; false if the class has no stream form or the stream is too short.
    virtual bool importFrom(InputStream& stream);
    virtual bool exportTo(OutputStream& stream) const;

protected:
    // Called when the last handle is released.
    virtual void destroy() const { delete this; }

private:
    mutable std::atomic<int> m_Count{0};
};

// A counting handle; null if it holds nothing. It converts to a handle of a base class, like its pointer. Use castTo()
// for a derived class.
template <class T>
class Unknown::Handle_T
{
public:
    Handle_T() = default;
    // Holds an object, or nothing for null.
    Handle_T(T* object) : m_Object(object)
    {
        if (m_Object)
            m_Object->addRef();
    }
    Handle_T(const Handle_T& other) : Handle_T(other.m_Object) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Handle_T(const Handle_T<U>& other) : Handle_T(static_cast<T*>(other.get()))
    {
    }
    Handle_T(Handle_T&& other) noexcept : m_Object(std::exchange(other.m_Object, nullptr)) {}
    ~Handle_T() { clear(); }
    Handle_T& operator=(Handle_T other) noexcept
    {
        std::swap(m_Object, other.m_Object);
        return *this;
    }

    // The object; null if the handle holds nothing.
    T* get() const { return m_Object; }
    T* operator->() const { return m_Object; }
    // The object. Undefined for a handle that holds nothing.
    T& operator*() const { return *m_Object; }
    // The same as get().
    operator T*() const { return m_Object; }
    // Whether the handle holds an object, or holds nothing.
    explicit operator bool() const { return m_Object != nullptr; }
    bool isNull() const { return m_Object == nullptr; }
    // A handle to the same object as class U; null if the object is not a U.
    template <class U>
    Handle_T<U> castTo() const
    {
        return Handle_T<U>(dynamic_cast<U*>(m_Object));
    }
    // Releases the object, if there is one.
    void clear()
    {
        if (T* old = std::exchange(m_Object, nullptr))
            old->release();
    }

private:
    T* m_Object = nullptr;
};

// Creators of classes by name. Registration is safe from any thread.
struct COMMONGROUND_API Unknown::RtFactory
{
    using Creator = Unknown* (*)();
    // Registers a class by its name, instead of an earlier one of that name, or removes it. The name is copied.
    static void setupCreator(const wchar_t* className, Creator creator);
    static void unsetupCreator(const wchar_t* className);
    // A new object of a registered class, or null.
    static Unknown* create(const wchar_t* className);
};

// A counted object with an identifier.
class COMMONGROUND_API Object : public virtual Unknown
{
public:
    // With a new identifier.
    Object() { uuid_create(m_ObjectId); }
    // With this identifier.
    explicit Object(const Uuid& id) : m_ObjectId(id) {}
    // The identifier, which never changes.
    const Uuid& getObjectId() const { return m_ObjectId; }

private:
    Uuid m_ObjectId;
};

} // namespace zet
