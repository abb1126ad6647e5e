#include "net/inner/blocks.h"

#include "framework/inner/fast_paths.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace zet::inner
{

namespace
{

// With less free space than this a receive call is not worth its cost.
constexpr int kLeastRoom = 4096;

void release(Block* block, BlockPool* pool)
{
    if (block->m_IsShared)
        static_cast<SharedBlock*>(block)->leave();
    else if (block->m_IsPinned)
        block->m_IsAbandoned = true;
    else if (pool)
        pool->give(block);
    else
        ::operator delete(block);
}

} // namespace

SharedBlock* SharedBlock::make(int size)
{
    void* const memory = ::operator new(sizeof(SharedBlock) + static_cast<size_t>(size), std::nothrow);
    if (!memory)
        return nullptr;
    auto* const block = new (memory) SharedBlock;
    // Its own fields follow the head: no byte is free, so no queue appends to it.
    block->m_Begin = static_cast<int>(sizeof(SharedBlock) - sizeof(Block));
    block->m_End = block->m_Begin + size;
    block->m_Capacity = block->m_End;
    block->m_Next = nullptr;
    block->m_IsPinned = false;
    block->m_IsAbandoned = false;
    block->m_IsShared = true;
    block->m_Holders.store(1, std::memory_order_relaxed);
    return block;
}

void SharedBlock::leave()
{
    if (m_Holders.fetch_sub(1, std::memory_order_acq_rel) > 1)
        return;
    this->~SharedBlock();
    ::operator delete(this);
}

BlockPool::~BlockPool()
{
    for (Shelf& shelf : m_Shelves)
        while (shelf.m_First)
            ::operator delete(std::exchange(shelf.m_First, shelf.m_First->m_Next));
}

int BlockPool::roundUp(int size)
{
    if (size > kUsual)
        return size;
    return std::min(static_cast<int>(std::bit_ceil(static_cast<unsigned int>(std::max(size, kSmall)))), kUsual);
}

BlockPool::Shelf* BlockPool::shelfOf(int capacity)
{
    if (capacity == kUsual)
        return &m_Shelves[kShelves - 1];
    const auto bits = static_cast<unsigned int>(capacity);
    // Not std::has_single_bit(), which is a call into the compiler's library for processors without an instruction for
    // it.
    if (capacity < kSmall || capacity > kUsual || (bits & (bits - 1)) != 0)
        return nullptr;
    return &m_Shelves[std::bit_width(bits) - std::bit_width(static_cast<unsigned int>(kSmall))];
}

Block* BlockPool::take(int capacity)
{
    Shelf* const shelf = shelfOf(capacity);
    Block* block = shelf ? shelf->m_First : nullptr;
    if (block)
    {
        shelf->m_First = block->m_Next;
        --shelf->m_Count;
    }
    else
    {
        block = static_cast<Block*>(::operator new(sizeof(Block) + static_cast<size_t>(capacity), std::nothrow));
        if (!block)
            return nullptr;
        block->m_Capacity = capacity;
        block->m_IsPinned = false;
        block->m_IsAbandoned = false;
        block->m_IsShared = false;
    }
    block->m_Next = nullptr;
    block->m_Begin = 0;
    block->m_End = 0;
    return block;
}

void BlockPool::give(Block* block)
{
    Shelf* const shelf = shelfOf(block->m_Capacity);
    if (!kHasFastPaths || !shelf || (shelf->m_Count + 1) * block->m_Capacity > kKept)
    {
        ::operator delete(block);
        return;
    }
    block->m_Next = shelf->m_First;
    shelf->m_First = block;
    ++shelf->m_Count;
}

bool InputBuffer::moveTo(Block* block, BlockPool& pool)
{
    if (!block)
        return false;
    block->m_End = size();
    if (m_Block)
    {
        std::memcpy(block->bytes(), data(), static_cast<size_t>(size()));
        release(m_Block, &pool);
    }
    m_Block = block;
    return true;
}

int InputBuffer::prepare(BlockPool& pool)
{
    const int held = size();
    if (m_Block && m_Block->m_IsPinned)
    {
        if (!moveTo(pool.take(m_Block->m_Capacity), pool))
            return 0;
    }
    if (!m_Block || m_Block->m_Capacity < BlockPool::kUsual)
    {
        if (!moveTo(pool.take(BlockPool::kUsual), pool))
            return 0;
    }
    else if (held == 0)
    {
        m_Block->m_Begin = 0;
        m_Block->m_End = 0;
    }
    else if (m_Block->room() < kLeastRoom)
    {
        if (held <= m_Block->m_Capacity / 2)
        {
            std::memmove(m_Block->bytes(), data(), static_cast<size_t>(held));
            m_Block->m_Begin = 0;
            m_Block->m_End = held;
        }
        else
        {
            constexpr int kMost = std::numeric_limits<int>::max() - static_cast<int>(sizeof(Block));
            const int capacity = m_Block->m_Capacity;
            if (capacity == kMost || !moveTo(pool.take(capacity > kMost / 2 ? kMost : capacity * 2), pool))
                return m_Block->room();
        }
    }
    return m_Block->room();
}

void InputBuffer::settle(BlockPool& pool)
{
    if (!m_Block)
        return;
    const int held = size();
    if (held == 0)
        drop(&pool);
    else if (m_Block->m_Capacity / 4 > held && m_Block->m_Capacity > BlockPool::kSmall)
        // If memory is short, the large block stays.
        moveTo(pool.take(held), pool);
}

void InputBuffer::drop(BlockPool* pool)
{
    if (m_Block)
        release(std::exchange(m_Block, nullptr), pool);
}

void InputBuffer::swap(InputBuffer& other)
{
    std::swap(m_Block, other.m_Block);
}

bool OutputQueue::append(int size, BlockPool& pool)
{
    const size_t usual = std::clamp<size_t>(m_Size * 2, BlockPool::kSmall, BlockPool::kUsual);
    Block* block = pool.take(BlockPool::roundUp(std::max(size, static_cast<int>(usual))));
    if (!block)
        return false;
    if (m_Tail)
        m_Tail->m_Next = block;
    else
        m_Head = block;
    m_Tail = block;
    return true;
}

bool OutputQueue::own(BlockPool& pool)
{
    const std::span<const unsigned char> bytes = left(*m_Head);
    Block* const block = pool.take(BlockPool::roundUp(static_cast<int>(bytes.size())));
    if (!block)
        return false;
    std::memcpy(block->bytes(), bytes.data(), bytes.size());
    block->m_End = static_cast<int>(bytes.size());
    static_cast<SharedBlock*>(m_Head)->leave();
    m_Head = block;
    m_Tail = block;
    return true;
}

bool OutputQueue::split(const void* data, int size, BlockPool& pool)
{
    if (m_Tail && m_Tail->m_IsShared && !own(pool))
        return false;
    const int first = m_Tail ? std::min(m_Tail->room(), size) : 0;
    Block* const old = m_Tail;
    if (first < size && !append(size - first, pool))
        return false;
    if (first > 0)
        put(old, data, first);
    if (first < size)
        put(m_Tail, static_cast<const unsigned char*>(data) + first, size - first);
    return true;
}

void OutputQueue::consume(size_t size, BlockPool& pool)
{
    m_Size -= size;
    if (m_Head && m_Head->m_IsShared)
    {
        if (m_Size == 0)
            drop(&pool);
        return;
    }
    while (m_Head && size >= static_cast<size_t>(m_Head->size()))
    {
        size -= static_cast<size_t>(m_Head->size());
        Block* const next = m_Head->m_Next;
        pool.give(m_Head);
        m_Head = next;
    }
    if (m_Head)
        m_Head->m_Begin += static_cast<int>(size);
    else
        m_Tail = nullptr;
}

void OutputQueue::drop(BlockPool* pool)
{
    while (m_Head)
    {
        Block* const next = m_Head->m_Next;
        release(m_Head, pool);
        m_Head = next;
    }
    m_Tail = nullptr;
    m_Size = 0;
}

void OutputQueue::swap(OutputQueue& other)
{
    std::swap(m_Head, other.m_Head);
    std::swap(m_Tail, other.m_Tail);
    std::swap(m_Size, other.m_Size);
}

} // namespace zet::inner
