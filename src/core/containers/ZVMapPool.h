#pragma once

#include "core/containers/ZVOwnedPtrArray.h"

#include <cstddef>
#include <cstdint>

// Hands out the nodes of one map from large blocks. Nodes are not freed one at a time: Reset frees all of them at once, and the
// destructor frees the blocks.
class ZVMapPool
{
public:
    // A node has nodeSize bytes at an address that is a multiple of 8. A block has blockSize bytes, or the size of a node if that
    // is larger.
    ZVMapPool(size_t blockSize, size_t nodeSize) : m_blockSize(blockSize), m_nodeSize(nodeSize) {}
    ZVMapPool(const ZVMapPool&) = delete;
    ZVMapPool& operator=(const ZVMapPool&) = delete;

    // Returns memory for one node, which is not initialised. Throws std::bad_alloc.
    void* Allocate();
    // Frees all nodes and keeps the blocks.
    void Reset() noexcept;

    int32_t GetBlocksWithRoom() const { return m_blocksWithRoom.GetCount(); }
    int32_t GetUsedUpBlocks() const { return m_usedUpBlocks.GetCount(); }

private:
    // The start of a block; its bytes come right after it.
    struct Block
    {
        uint64_t Size;
        uint64_t BytesLeft;

        void* Carve(size_t nodeSize);

        // A block is larger than this structure, so it must not be freed with the size of the structure.
        static void operator delete(void* block) { ::operator delete(block); }
    };

    Block* AddBlock();

    size_t m_blockSize;
    size_t m_nodeSize;
    [[maybe_unused]] size_t m_reserved = 0;
    // The first array always has room for the blocks of both, so that Reset needs no memory.
    ZVOwnedPtrArray<Block> m_blocksWithRoom;
    ZVOwnedPtrArray<Block> m_usedUpBlocks;
};
