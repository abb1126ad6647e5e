// An ordered map whose walkers may erase the entry that they are visiting.
#pragma once

#include <map>
#include <utility>

namespace zet
{

// Keys ascend by operator<. Not locked.
template <class K, class V>
class Dictionary
{
public:
    // Visits one entry; false stops the walk.
    class Walker
    {
    public:
        virtual ~Walker() = default;
        // Called for each entry. The value may be changed; false stops the walk.
        virtual bool onEntry(const K& key, V& value) = 0;
    };

    Dictionary() = default;
    // Running walks belong to one dictionary, so a copy copies the entries only.
    Dictionary(const Dictionary& other) : m_Map(other.m_Map) {}
    Dictionary& operator=(const Dictionary&) = delete;

    // The number of entries.
    int getSize() const { return static_cast<int>(m_Map.size()); }
    // Whether the dictionary has no entries.
    bool isEmpty() const { return m_Map.empty(); }
    // Null if the key is missing.
    V* find(const K& key)
    {
        const auto place = m_Map.find(key);
        return place == m_Map.end() ? nullptr : &place->second;
    }
    const V* find(const K& key) const { return const_cast<Dictionary*>(this)->find(key); }
    // Stores the value; replaces an existing one.
    void set(const K& key, V value) { m_Map.insert_or_assign(key, std::move(value)); }
    // Erases the key; running walks continue after it. The value is destroyed last, when the dictionary is consistent
    // again; a value that a walker is visiting is destroyed after that walker has returned.
    bool erase(const K& key)
    {
        const auto place = m_Map.find(key);
        if (place == m_Map.end())
            return false;
        Walk* viewer = nullptr;
        for (Walk* walk = m_Walks; walk; walk = walk->m_Outer)
        {
            if (walk->m_Next == place)
                ++walk->m_Next;
            if (walk->m_Current == place)
            {
                walk->m_Current = m_Map.end();
                viewer = walk;
            }
        }
        auto node = m_Map.extract(place);
        if (viewer)
            viewer->m_Erased = std::move(node);
        return true;
    }
    // Erases all entries, each as erase() does.
    void clear()
    {
        while (!m_Map.empty())
            erase(m_Map.begin()->first);
    }

    // Visits the entries in order. The walk advances to the next entry before it calls the walker, so the walker may
    // erase any entry, including its own. False if the walker stopped the walk.
    bool foreach(Walker& walker)
    {
        Walk walk;
        walk.m_Next = m_Map.begin();
        walk.m_Outer = m_Walks;
        struct Registered
        {
            Dictionary& m_Owner;
            Walk& m_Walk;
            Registered(Dictionary& owner, Walk& walk) : m_Owner(owner), m_Walk(walk) { owner.m_Walks = &walk; }
            ~Registered() { m_Owner.m_Walks = m_Walk.m_Outer; }
        } registered(*this, walk);
        while (walk.m_Next != m_Map.end())
        {
            walk.m_Current = walk.m_Next++;
            const bool goesOn = walker.onEntry(walk.m_Current->first, walk.m_Current->second);
            walk.m_Current = m_Map.end();
            // Destroys the value that the walker erased; its destructor may erase further entries.
            const typename std::map<K, V>::node_type erased = std::move(walk.m_Erased);
            if (!goesOn)
                return false;
        }
        return true;
    }

private:
    // One running walk. If the entry is erased, the outermost walk that is visiting it keeps the value.
    struct Walk
    {
        typename std::map<K, V>::iterator m_Current;
        typename std::map<K, V>::iterator m_Next;
        typename std::map<K, V>::node_type m_Erased;
        Walk* m_Outer = nullptr;
    };
    std::map<K, V> m_Map;
    Walk* m_Walks = nullptr;
};

} // namespace zet
