#include "core/containers/ZVMapBase.h"

#include <new>
#include <utility>

namespace
{
constexpr int64_t SmallestBucketCount = 7;

int64_t BucketCountFor(int64_t size)
{
    int64_t bucketCount = SmallestBucketCount;
    if (size > SmallestBucketCount)
        while (bucketCount < size)
            bucketCount = bucketCount * 2 + 1;
    return bucketCount;
}
}

void ZVMapBase::InitHashTable(int32_t size, bool addHeadroom)
{
    const int64_t wanted = addHeadroom ? int64_t {size} * 120 / 100 : size;
    const int64_t bucketCount = BucketCountFor(wanted);
    if (bucketCount > INT32_MAX)
        throw std::bad_alloc();

    const auto oldBuckets = std::exchange(m_buckets, std::make_unique<ZVMapNodeBase*[]>(static_cast<size_t>(bucketCount)));
    const int32_t oldBucketCount = std::exchange(m_bucketCount, static_cast<int32_t>(bucketCount));

    // Each node goes to the head of its new chain, so the order of a chain may be reversed.
    for (int32_t bucket = 0; bucket < oldBucketCount; ++bucket)
    {
        for (ZVMapNodeBase* node = oldBuckets.get()[bucket]; node != nullptr;)
        {
            ZVMapNodeBase* const next = node->Next;
            ZVMapNodeBase*& head = m_buckets[GetBucket(node)];
            node->Next = head;
            head = node;
            node = next;
        }
    }
}

void ZVMapBase::RemoveAll()
{
    if (m_count == 0)
        return;
    for (int32_t bucket = 0; bucket < m_bucketCount; ++bucket)
    {
        for (ZVMapNodeBase* node = std::exchange(m_buckets.get()[bucket], nullptr); node != nullptr;)
            FreeNode(std::exchange(node, node->Next));
    }
    m_count = 0;
    if (m_pool != nullptr)
        m_pool->Reset();
}

ZVMapPosition ZVMapBase::GetFirstPosition() const
{
    for (int32_t bucket = 0; bucket < m_bucketCount; ++bucket)
        if (m_buckets.get()[bucket] != nullptr)
            return {bucket, m_buckets.get()[bucket]};
    return {0, nullptr};
}

ZVMapNodeBase* ZVMapBase::TakeNext(ZVMapPosition& position) const
{
    ZVMapNodeBase* const node = position.Node;
    if (node == nullptr)
        return nullptr;

    position.Node = node->Next;
    while (position.Node == nullptr && ++position.Bucket < m_bucketCount)
        position.Node = m_buckets.get()[position.Bucket];
    if (position.Node == nullptr)
        position.Bucket = -1;
    return node;
}

ZVMapNodeBase** ZVMapBase::FindTail(uint32_t hash) const
{
    ZVMapNodeBase** link = BucketOf(hash);
    while (*link != nullptr)
        link = &(*link)->Next;
    return link;
}

bool ZVMapBase::GrowForOneMore()
{
    const int64_t newCount = int64_t {m_count} + 1;
    if (m_bucketCount >= 1 && int64_t {m_bucketCount} * 2 + 2 >= newCount)
        return false;
    if (newCount > INT32_MAX)
        throw std::bad_alloc();
    InitHashTable(static_cast<int32_t>(newCount), false);
    return true;
}

void ZVMapBase::ReplacePool(bool use, size_t blockSize)
{
    m_pool = use ? std::make_unique<ZVMapPool>(blockSize, GetNodeSize()) : nullptr;
}

void ZVMapBase::Swap(ZVMapBase& other) noexcept
{
    std::swap(m_count, other.m_count);
    std::swap(m_bucketCount, other.m_bucketCount);
    std::swap(m_pool, other.m_pool);
    std::swap(m_buckets, other.m_buckets);
}
