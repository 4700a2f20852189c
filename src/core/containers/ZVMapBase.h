#pragma once

#include "core/containers/ZVMapPool.h"

#include <cstddef>
#include <cstdint>
#include <memory>

// The start of a map's node; the key and the value follow.
struct ZVMapNodeBase
{
    ZVMapNodeBase* Next = nullptr;
};

// A place in the iteration over a map; without a node it is the end. It is valid as long as the node stays in the map and the
// table does not grow.
struct ZVMapPosition
{
    int32_t Bucket = -1;
    ZVMapNodeBase* Node = nullptr;

    explicit operator bool() const { return Node != nullptr; }
};

// The part of a hash map that does not depend on keys and values: a table of buckets, each with a chain of nodes. The order of
// the entries is that of the buckets and, inside a bucket, that of the chain. Result files are written in this order, so no rule
// here that decides where a node goes may change.
class ZVMapBase
{
public:
    // The order of the virtual functions is fixed; ZVMap adds its own.
    virtual ~ZVMapBase() = default;

protected:
    // Frees a node and what it holds.
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

    // Sets the number of buckets: 7, or for a size above 7 one less than the smallest power of two above size. With addHeadroom a
    // fifth is added to size first. The nodes move to the new table. Throws std::bad_alloc and has then changed nothing.
    void InitHashTable(int32_t size, bool addHeadroom);

    // Removes all entries. The table and the blocks of a pool stay allocated.
    void RemoveAll();

    // The position of the first entry. For an empty map the bucket is 0 and the node null.
    ZVMapPosition GetFirstPosition() const;

protected:
    ZVMapBase() = default;

    // Returns the node at the position, or null at the end, and moves the position to the next one. After the last node the
    // bucket is -1 and the node null. The returned node may be removed from the map; the position stays valid.
    ZVMapNodeBase* TakeNext(ZVMapPosition& position) const;

    // The link, in the table or in the last node, where a new node of this hash goes. There must be a table.
    ZVMapNodeBase** FindTail(uint32_t hash) const;
    ZVMapNodeBase** BucketOf(uint32_t hash) const { return m_buckets.get() + hash % static_cast<uint32_t>(m_bucketCount); }

    // Grows the table if one more entry needs it; true if it grew.
    bool GrowForOneMore();

    // Frees an existing pool and, with use, makes a new one. Only for an empty map.
    void ReplacePool(bool use, size_t blockSize);

    void Swap(ZVMapBase& other) noexcept;

    int32_t m_count = 0;
    int32_t m_bucketCount = 0;
    std::unique_ptr<ZVMapPool> m_pool;
    std::unique_ptr<ZVMapNodeBase*[]> m_buckets;
};
