// The bytes of a connection on their way in and out. Both stores hold no memory while they are empty.
#pragma once

#include <cstddef>
#include <cstring>

namespace zet::inner
{

// A piece of memory with its bytes behind it.
struct Block
{
    Block* m_Next;
    int m_Begin;
    int m_End;
    int m_Capacity;

    unsigned char* bytes() { return reinterpret_cast<unsigned char*>(this + 1); }
    int size() const { return m_End - m_Begin; }
    int room() const { return m_Capacity - m_End; }
};

// Keeps some blocks of each usual size for the next one who needs one. Belongs to one thread.
class BlockPool
{
public:
    // Capacity of the smallest usual block, in which a few commands fit; each further one has twice as much.
    static constexpr int kSmall = 1024;
    // Of the largest: 64 KiB together with its head.
    static constexpr int kUsual = 0x10000 - static_cast<int>(sizeof(Block));
    // Blocks of each size.
    static constexpr int kKept = 16;

    BlockPool() = default;
    ~BlockPool();
    BlockPool(const BlockPool&) = delete;
    BlockPool& operator=(const BlockPool&) = delete;

    // The capacity of the smallest usual block for so many bytes, or just as many where none has the room.
    static int roundUp(int size);
    // An empty block, or null where memory is short.
    Block* take(int capacity);
    void give(Block* block);

private:
    struct Shelf
    {
        Block* m_First = nullptr;
        int m_Count = 0;
    };

    static constexpr int kShelves = 7;
    static_assert(kSmall << (kShelves - 2) < kUsual && kSmall << (kShelves - 1) > kUsual);

    // Null for a capacity that is not usual.
    Shelf* shelfOf(int capacity);

    Shelf m_Shelves[kShelves];
};

// What has come and was not yet read, in one piece.
class InputBuffer
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
    void consume(int size) { m_Block->m_Begin += size; }

    // Makes room at the end, doubling what is there where it is full. Returns the room, or 0 where memory is short.
    int prepare(BlockPool& pool);
    unsigned char* end() { return m_Block->bytes() + m_Block->m_End; }
    void grow(int size) { m_Block->m_End += size; }

    // Gives back what an idle connection does not need: all when empty, else what is far above the bytes held.
    void settle(BlockPool& pool);
    void drop(BlockPool* pool);
    void swap(InputBuffer& other);

private:
    bool moveTo(Block* block, BlockPool& pool);

    Block* m_Block = nullptr;
};

// What was sent and has not yet left, in pieces that grow from 1 KiB to the usual block.
class OutputQueue
{
public:
    OutputQueue() = default;
    ~OutputQueue() { drop(nullptr); }
    OutputQueue(const OutputQueue&) = delete;
    OutputQueue& operator=(const OutputQueue&) = delete;

    size_t size() const { return m_Size; }
    // All or nothing.
    bool write(const void* data, int size, BlockPool& pool)
    {
        if (!m_Tail || m_Tail->room() < size)
            return split(data, size, pool);
        put(m_Tail, data, size);
        return true;
    }

    // The first block of what is queued; the others follow by m_Next.
    Block* front() { return m_Head; }
    void consume(size_t size, BlockPool& pool);
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

    Block* m_Head = nullptr;
    Block* m_Tail = nullptr;
    size_t m_Size = 0;
};

} // namespace zet::inner
