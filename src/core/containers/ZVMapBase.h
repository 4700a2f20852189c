#pragma once

#include "core/containers/ZVMapPool.h"

#include <cstddef>
#include <cstdint>

// The head of a map's node; the key and the value follow.
struct ZVMapNodeBase
{
    ZVMapNodeBase* Next = nullptr;
};

// A place in the iteration over a map. It is at the end when it has no node, and holds while that node stays in the map and the
// table does not grow.
struct ZVMapPosition
{
    int32_t Bucket = -1;
    ZVMapNodeBase* Node = nullptr;

    explicit operator bool() const { return Node != nullptr; }
};

// The part of a hash map that knows nothing of keys and values: a table of buckets, each a chain of nodes. There is no order but
// that of the buckets and, inside one, of the chain; entries are written to result files in this order, so every rule here that
// places a node is fixed.
class ZVMapBase
{
public:
    // The order of the virtual functions is fixed; ZVMap adds its own.
    virtual ~ZVMapBase();

protected:
    // Gives a node back together with what it holds.
    virtual void FreeNode(ZVMapNodeBase* node) = 0;
    // The index of the bucket that a node belongs to.
    virtual uint32_t GetBucket(const ZVMapNodeBase* node) const = 0;
    // The size of a node in bytes.
    virtual size_t GetNodeSize() const = 0;

public:
    ZVMapBase(const ZVMapBase&) = delete;
    ZVMapBase& operator=(const ZVMapBase&) = delete;

    int32_t GetCount() const { return m_count; }
    bool IsEmpty() const { return m_count == 0; }
    int32_t GetBucketCount() const { return m_bucketCount; }

    // Sets the number of buckets to 7, or to one less than the smallest power of two above size if size is more than 7; with
    // addHeadroom a fifth is added to size first. The nodes are put into the new table. Throws std::bad_alloc and has then
    // changed nothing.
    void InitHashTable(int32_t size, bool addHeadroom);

    // Removes all entries. The table stays as it is, and so do the blocks of a pool.
    void RemoveAll();

    // The first entry. For an empty map the bucket is 0 and the node null.
    ZVMapPosition GetFirstPosition() const;

protected:
    ZVMapBase() = default;

    // The node at the position, which moves on to the next, or null at the end. Behind the last the bucket is -1 and the node
    // null. The node that was given can be removed from the map without harm to the position.
    ZVMapNodeBase* TakeNext(ZVMapPosition& position) const;

    // The place in the table or in the last node where a node of this hash is to be linked. There must be a table.
    ZVMapNodeBase** FindTail(uint32_t hash) const;
    ZVMapNodeBase** BucketOf(uint32_t hash) const { return m_buckets + hash % static_cast<uint32_t>(m_bucketCount); }

    // Grows the table if one more entry needs that; true when it did.
    bool GrowForOneMore();

    // Drops an existing pool, and with use makes a new one. Only for an empty map.
    void ReplacePool(bool use, size_t blockSize);

    void Swap(ZVMapBase& other) noexcept;

    int32_t m_count = 0;
    int32_t m_bucketCount = 0;
    ZVMapPool* m_pool = nullptr;
    ZVMapNodeBase** m_buckets = nullptr;
};
