#include "net/quic/inner/memory.h"

#include <cstdlib>
#include <cstring>

namespace zet::inner
{

namespace
{

// Before each piece of memory.
struct alignas(std::max_align_t) Head
{
    // Of both.
    size_t m_Size;
};

} // namespace

struct QuicMemory::Calls
{
    static void* resize(void* piece, size_t size, void* self)
    {
        auto& memory = *static_cast<QuicMemory*>(self);
        Head* const old = piece ? static_cast<Head*>(piece) - 1 : nullptr;
        const size_t before = old ? old->m_Size : 0;
        if (size > memory.m_Most - sizeof(Head))
            return nullptr;
        const size_t whole = sizeof(Head) + size;
        if (memory.m_Used - before > memory.m_Most - whole)
            return nullptr;
        auto* const head = static_cast<Head*>(std::realloc(old, whole));
        if (!head)
            return nullptr;
        head->m_Size = whole;
        memory.m_Used += whole - before;
        return head + 1;
    }
    static void* take(size_t size, void* self) { return resize(nullptr, size, self); }
    static void* takeZeroed(size_t count, size_t size, void* self)
    {
        if (size > 0 && count > static_cast<size_t>(-1) / size)
            return nullptr;
        void* const piece = take(count * size, self);
        if (piece)
            std::memset(piece, 0, count * size);
        return piece;
    }
    static void release(void* piece, void* self)
    {
        if (!piece)
            return;
        Head* const head = static_cast<Head*>(piece) - 1;
        static_cast<QuicMemory*>(self)->m_Used -= head->m_Size;
        std::free(head);
    }
};

ngtcp2_mem QuicMemory::makeCalls()
{
    return {this, Calls::take, Calls::release, Calls::takeZeroed, Calls::resize};
}

} // namespace zet::inner
