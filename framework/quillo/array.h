// The engine's growing arrays.
#pragma once

#include "framework/string.h"

#include <type_traits>
#include <vector>

namespace Quillo
{

// T is the element type, R the type of an argument. ElementAt and operator[] do not check indices; negative sizes and
// counts count as 0.
template <class T, class R = const T&>
class TArray
{
    static_assert(!std::is_same_v<T, bool>, "an array of bool has no elements to refer to");

public:
    // The number of elements.
    int Num() const { return static_cast<int>(m_Items.size()); }
    int GetCount() const { return Num(); }

    // Returns the index of the new element.
    int AddItem(R item)
    {
        m_Items.push_back(item);
        return Num() - 1;
    }
    // Inserts count copies before an index; an index outside the array means its nearest end.
    void InsertAt(int index, R item, int count = 1)
    {
        const int place = index < 0 ? 0 : index < Num() ? index : Num();
        m_Items.insert(m_Items.begin() + place, toSize(count), item);
    }
    // New elements are default-constructed.
    void SetSize(int size) { m_Items.resize(toSize(size)); }
    // Adds count default-constructed elements and returns the index of the first.
    int AddSize(int count)
    {
        const int first = Num();
        m_Items.resize(m_Items.size() + toSize(count));
        return first;
    }
    // Adds count elements of zero bytes and returns the index of the first.
    int AddZeroed(int count = 1)
    {
        static_assert(IsPOD(), "only plain elements can be made of zero bytes");
        const int first = Num();
        m_Items.resize(m_Items.size() + toSize(count));
        if (Num() > first)
            std::memset(static_cast<void*>(&m_Items[static_cast<size_t>(first)]), 0, toSize(count) * sizeof(T));
        return first;
    }

    // The element at an index from 0 to Num() - 1, which is not checked. Valid until the size changes.
    T& ElementAt(int index) { return m_Items[static_cast<size_t>(index)]; }
    const T& ElementAt(int index) const { return m_Items[static_cast<size_t>(index)]; }
    T& operator[](int index) { return ElementAt(index); }
    const T& operator[](int index) const { return ElementAt(index); }

    // Whether elements may be created and moved as bytes.
    static constexpr bool IsPOD() { return std::is_trivially_copyable_v<T>; }

private:
    static size_t toSize(int count) { return count > 0 ? static_cast<size_t>(count) : 0; }

    std::vector<T> m_Items;
};

// Pointers to objects with an m_Name. The objects are not owned.
template <class T>
class TNamedPtrArray : public TArray<T*, T*>
{
public:
    // The first object of that name, or null.
    T* Find(const wchar_t* name) const
    {
        for (int i = 0; i < this->Num(); ++i)
            if (this->ElementAt(i) && this->ElementAt(i)->m_Name == name)
                return this->ElementAt(i);
        return nullptr;
    }
};

} // namespace Quillo
