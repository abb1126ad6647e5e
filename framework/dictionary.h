// An ordered map whose walkers may remove the entry they are given.
#pragma once

#include <functional>
#include <map>

namespace zet
{

// Keys ascend by operator<. Not locked.
template <class K, class V>
class Dictionary
{
public:
    // Sees one entry; false stops the walk.
    class Walker
    {
    public:
        virtual ~Walker() = default;
        virtual bool onEntry(const K& key, V& value) = 0;
    };

    int getSize() const { return static_cast<int>(m_Map.size()); }
    bool isEmpty() const { return m_Map.empty(); }
    // Null when the key is not there.
    V* find(const K& key)
    {
        const auto place = m_Map.find(key);
        return place == m_Map.end() ? nullptr : &place->second;
    }
    const V* find(const K& key) const { return const_cast<Dictionary*>(this)->find(key); }
    // Stores the value, replacing what is there.
    void set(const K& key, V value) { m_Map.insert_or_assign(key, std::move(value)); }
    // Erases the key; running walks go on behind it. The value dies last, when the dictionary is whole again.
    bool erase(const K& key)
    {
        const auto place = m_Map.find(key);
        if (place == m_Map.end())
            return false;
        for (Walk* walk = m_Walks; walk; walk = walk->m_Outer)
            if (walk->m_Next == place)
                ++walk->m_Next;
        const auto node = m_Map.extract(place);
        return true;
    }
    void clear()
    {
        while (!m_Map.empty())
            erase(m_Map.begin()->first);
    }

    // Visits the entries in order. The walk has moved on to the following entry before the walker is called, so the
    // walker may erase any entry, its own too.
    bool foreach(Walker& walker)
    {
        Walk walk{m_Map.begin(), m_Walks};
        struct Registered
        {
            Dictionary& m_Owner;
            Walk& m_Walk;
            Registered(Dictionary& owner, Walk& walk) : m_Owner(owner), m_Walk(walk) { owner.m_Walks = &walk; }
            ~Registered() { m_Owner.m_Walks = m_Walk.m_Outer; }
        } registered(*this, walk);
        while (walk.m_Next != m_Map.end())
        {
            auto entry = walk.m_Next++;
            const K key = entry->first;
            V value = entry->second;
            if (!walker.onEntry(key, value))
                return false;
        }
        return true;
    }

private:
    struct Walk
    {
        typename std::map<K, V>::iterator m_Next;
        Walk* m_Outer;
    };
    std::map<K, V> m_Map;
    Walk* m_Walks = nullptr;
};

} // namespace zet
