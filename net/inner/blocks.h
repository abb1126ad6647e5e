// The buffers of a connection for input and output. Both hold no memory while they are empty.
#pragma once

#include "framework/export.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <utility>

namespace zet::inner
{

// The head of a piece of memory; m_Capacity bytes follow it, of which those from m_Begin to m_End are in use.
struct Block
{
    Block* m_Next;
    int m_Begin;
    int m_End;
    int m_Capacity;
    // See BlockPin.
    bool m_IsPinned;
    bool m_IsAbandoned;
    // Whether it is a SharedBlock.
    bool m_IsShared;

    unsigned char* bytes() { return reinterpret_cast<unsigned char*>(this + 1); }
    int size() const { return m_End - m_Begin; }
    int room() const { return m_Capacity - m_End; }
    // Whether this byte is in the block.
    bool holds(const unsigned char* byte)
    {
        const auto first = reinterpret_cast<std::uintptr_t>(bytes());
        return reinterpret_cast<std::uintptr_t>(byte) - first < static_cast<std::uintptr_t>(m_Capacity);
    }
};

// The same output of several connections, once: each queue holds the block until it has sent it or until more output
// follows. m_Begin to m_End are all its bytes; how many of them a queue has still to send, only the queue knows.
struct COMMONGROUND_API SharedBlock : Block
{
    // Space for size bytes. The caller holds it. Null if memory is short.
    static SharedBlock* make(int size);

    unsigned char* data() { return bytes() + m_Begin; }
    // Whether these are its last bytes.
    bool endsWith(const void* last, int size)
    {
        const auto* const from = static_cast<const unsigned char*>(last);
        return holds(from) && from + size == bytes() + m_End;
    }
    void hold() { m_Holders.fetch_add(1, std::memory_order_relaxed); }
    // The last holder frees the block.
    void leave();

    // Atomic, since the System of one of its connections may move to another thread.
    std::atomic<int> m_Holders;
};

// Keeps the bytes of a block in place while a caller reads them: whatever happens meanwhile to the buffer that has the
// block, nothing overwrites or frees them. A pin of a pinned block does nothing.
class BlockPin
{
public:
    explicit BlockPin(Block& block) : m_Block(block), m_IsOuter(!block.m_IsPinned) { block.m_IsPinned = true; }
    ~BlockPin()
    {
        if (!m_IsOuter)
            return;
        m_Block.m_IsPinned = false;
        if (m_Block.m_IsAbandoned)
            ::operator delete(&m_Block);
    }
    BlockPin(const BlockPin&) = delete;
    BlockPin& operator=(const BlockPin&) = delete;

private:
    Block& m_Block;
    const bool m_IsOuter;
};

// Keeps released blocks of the usual capacities for reuse. THREADS: one.
class COMMONGROUND_API BlockPool
{
public:
    // The smallest usual capacity, enough for a few commands. The others are its doubles up to 32 KiB, and kUsual.
    static constexpr int kSmall = 1024;
    // The largest usual capacity: 64 KiB with the head.
    static constexpr int kUsual = 0x10000 - static_cast<int>(sizeof(Block));
    // Bytes kept of each capacity: 16 of the largest blocks, and a small one for each of 1,024 connections.
    static constexpr int kKept = 1024 * 1024;

    // During its lifetime a connection of this pool whose queue is empty holds the block instead of copying most of its
    // bytes. REQUIRES: the pool lives longer.
    class Offer
    {
    public:
        Offer(BlockPool& pool, SharedBlock& block) : m_Pool(pool), m_Outer(std::exchange(pool.m_Offered, &block)) {}
        ~Offer() { m_Pool.m_Offered = m_Outer; }
        Offer(const Offer&) = delete;
        Offer& operator=(const Offer&) = delete;

    private:
        BlockPool& m_Pool;
        SharedBlock* const m_Outer;
    };

    BlockPool() = default;
    ~BlockPool();
    BlockPool(const BlockPool&) = delete;
    BlockPool& operator=(const BlockPool&) = delete;

    // The smallest usual capacity of at least size bytes; size itself if it is above kUsual.
    static int roundUp(int size);
    // An empty block of this capacity, or null if memory is short. The caller returns it with give().
    Block* take(int capacity);
    void give(Block* block);
    // The offered block if these are its last bytes and at least half of all, so that a queue does not hold far more
    // memory than it counts; else null.
    SharedBlock* getOffered(const void* data, int size)
    {
        return m_Offered && m_Offered->endsWith(data, size) && size >= m_Offered->size() / 2 ? m_Offered : nullptr;
    }

private:
    struct Shelf
    {
        Block* m_First = nullptr;
        int m_Count = 0;
    };

    static constexpr int kShelves = 7;
    static_assert(kSmall << (kShelves - 2) < kUsual && kSmall << (kShelves - 1) > kUsual);

    // Null if the capacity is not a usual one.
    Shelf* shelfOf(int capacity);

    Shelf m_Shelves[kShelves];
    SharedBlock* m_Offered = nullptr;
};

// Received bytes that have not been read, in one piece.
class COMMONGROUND_API InputBuffer
{
public:
    InputBuffer() = default;
    ~InputBuffer() { drop(nullptr); }
    InputBuffer(const InputBuffer&) = delete;
    InputBuffer& operator=(const InputBuffer&) = delete;

    int size() const { return m_Block ? m_Block->size() : 0; }
    // Bytes of memory that are held.
    int capacity() const { return m_Block ? m_Block->m_Capacity : 0; }
    const unsigned char* data() const { return m_Block ? m_Block->bytes() + m_Block->m_Begin : nullptr; }
    // The block that holds the bytes, for a BlockPin; null while the buffer has no memory.
    Block* block() { return m_Block; }
    // REQUIRES: 0 < size <= size().
    void consume(int size) { m_Block->m_Begin += size; }

    // Frees space at the end, by a larger block if necessary. Returns the free bytes; 0 if there are none and memory is
    // short.
    int prepare(BlockPool& pool);
    unsigned char* end() { return m_Block->bytes() + m_Block->m_End; }
    void grow(int size) { m_Block->m_End += size; }

    // Releases memory that an idle connection does not need: all if empty, the excess if the block is more than four
    // times too large.
    void settle(BlockPool& pool);
    // Without a pool the memory is freed.
    void drop(BlockPool* pool);
    void swap(InputBuffer& other);

private:
    bool moveTo(Block* block, BlockPool& pool);

    Block* m_Block = nullptr;
};

// Bytes queued for sending, in blocks that grow from 1 KiB to kUsual. Or in one shared block; the queue copies what
// is left of it before it queues more, which fails if there is no memory for that.
class COMMONGROUND_API OutputQueue
{
public:
    OutputQueue() = default;
    ~OutputQueue() { drop(nullptr); }
    OutputQueue(const OutputQueue&) = delete;
    OutputQueue& operator=(const OutputQueue&) = delete;

    size_t size() const { return m_Size; }
    // Queues all bytes, or none if memory is short.
    bool write(const void* data, int size, BlockPool& pool)
    {
        if (!m_Tail || m_Tail->room() < size)
            return split(data, size, pool);
        put(m_Tail, data, size);
        return true;
    }

    // Queues the last size bytes of this block without a copy. REQUIRES: size() == 0 < size.
    void share(SharedBlock& block, int size)
    {
        block.hold();
        m_Head = &block;
        m_Tail = &block;
        m_Size = static_cast<size_t>(size);
    }

    // The first block of the queue, null if it is empty; m_Next links the others.
    Block* front() { return m_Head; }
    // What is left of a block of this queue.
    std::span<const unsigned char> left(Block& block) const
    {
        const int begin = block.m_IsShared ? block.m_End - static_cast<int>(m_Size) : block.m_Begin;
        return {block.bytes() + begin, block.bytes() + block.m_End};
    }
    // REQUIRES: size <= size().
    void consume(size_t size, BlockPool& pool);
    // Without a pool the memory is freed.
    void drop(BlockPool* pool);
    void swap(OutputQueue& other);

private:
    void put(Block* block, const void* data, int size)
    {
        unsigned char* const at = block->bytes() + block->m_End;
        block->m_End += size;
        m_Size += static_cast<size_t>(size);
        std::memcpy(at, data, static_cast<size_t>(size));
    }
    bool split(const void* data, int size, BlockPool& pool);
    bool append(int size, BlockPool& pool);
    // Copies what is left of a shared block.
    bool own(BlockPool& pool);

    Block* m_Head = nullptr;
    Block* m_Tail = nullptr;
    size_t m_Size = 0;
};

} // namespace zet::inner
