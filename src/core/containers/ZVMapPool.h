#pragma once

#include "core/containers/ZVPointerArray.h"

#include <cstddef>
#include <cstdint>

// Hands out the nodes of one map from large blocks. Nodes are not given back one at a time: Reset makes all of them free at once,
// and the destructor frees the blocks.
class ZVMapPool
{
public:
    // Nodes are nodeSize bytes at addresses that are multiples of 8. A block holds blockSize bytes, or one node if that is
    // larger.
    ZVMapPool(size_t blockSize, size_t nodeSize) : m_blockSize(blockSize), m_nodeSize(nodeSize) {}
    ~ZVMapPool();
    ZVMapPool(const ZVMapPool&) = delete;
    ZVMapPool& operator=(const ZVMapPool&) = delete;

    // Storage for one node, not set to anything. Throws std::bad_alloc.
    void* Allocate();
    // Takes all nodes back and keeps the blocks.
    void Reset() noexcept;

    int32_t GetBlocksWithRoom() const { return m_blocksWithRoom.GetCount(); }
    int32_t GetUsedUpBlocks() const { return m_usedUpBlocks.GetCount(); }

private:
    // The head of a block; its bytes follow directly.
    struct Block
    {
        uint64_t Size;
        uint64_t BytesLeft;

        void* Carve(size_t nodeSize);
    };

    Block* AddBlock();

    size_t m_blockSize;
    size_t m_nodeSize;
    [[maybe_unused]] size_t m_reserved = 0;
    // There is always storage in the first array for all blocks of both.
    ZVPointerArray<Block> m_blocksWithRoom;
    ZVPointerArray<Block> m_usedUpBlocks;
};
