#include "core/containers/ZVMapPool.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace
{
constexpr uintptr_t NodeAlignment = 8;
// A block before this index in which only the padding of a node did not fit is tried again; any other block that cannot give a
// node is not. So a scan never passes more blocks than this, however many there are.
constexpr int8_t RetriedBlocks = 8;
}

void* ZVMapPool::Allocate()
{
    int8_t index = 0;
    while (index < m_blocksWithRoom.GetCount())
    {
        Block* const block = m_blocksWithRoom[index];
        if (void* const node = block->Carve(m_nodeSize))
            return node;
        if (index >= RetriedBlocks || block->BytesLeft < m_nodeSize)
        {
            m_usedUpBlocks.Reserve(m_usedUpBlocks.GetCount() + 1);
            m_usedUpBlocks.Add(m_blocksWithRoom.DetachAt(index));
        }
        else
            ++index;
    }

    void* const node = AddBlock()->Carve(m_nodeSize);
    if (node == nullptr)
    {
        fputs("A new block of a map's node pool has no room for a node.\n", stderr);
        abort();
    }
    return node;
}

void ZVMapPool::Reset() noexcept
{
    while (!m_usedUpBlocks.IsEmpty())
        m_blocksWithRoom.Add(m_usedUpBlocks.DetachAt(m_usedUpBlocks.GetCount() - 1));
    for (Block* block : m_blocksWithRoom)
        block->BytesLeft = block->Size;
}

ZVMapPool::Block* ZVMapPool::AddBlock()
{
    m_blocksWithRoom.Reserve(m_blocksWithRoom.GetCount() + m_usedUpBlocks.GetCount() + 1);
    const size_t size = std::max(m_blockSize, m_nodeSize);
    Block* const block = new (::operator new(sizeof(Block) + size)) Block {size, size};
    m_blocksWithRoom.Add(block);
    return block;
}

void* ZVMapPool::Block::Carve(size_t nodeSize)
{
    uint8_t* const free = reinterpret_cast<uint8_t*>(this + 1) + (Size - BytesLeft);
    const size_t padding = -reinterpret_cast<uintptr_t>(free) % NodeAlignment;
    if (BytesLeft < nodeSize + padding)
        return nullptr;
    BytesLeft -= nodeSize + padding;
    return free + padding;
}
