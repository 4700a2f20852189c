#pragma once

#include "core/containers/ZVMapBase.h"
#include "core/containers/ZVMapKey.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>

// An entry of a map: the key as it was first set and, unless the map is a set, the value.
template <class K, class V, bool HasValue>
struct ZVMapNode : ZVMapNodeBase
{
    template <class KArg>
    explicit ZVMapNode(KArg key) : Key(key)
    {
    }

    const K Key;
    V Value {};
};

template <class K, class V>
struct ZVMapNode<K, V, false> : ZVMapNodeBase
{
    template <class KArg>
    explicit ZVMapNode(KArg key) : Key(key)
    {
    }

    const K Key;
};

// A hash map from K to V, or without values a set of K. Keys and values are passed as KArg and VArg. An entry stays at its
// address until it is removed. A failed allocation throws std::bad_alloc and adds no key; but if only the copy of the value
// fails, the key is there with the default value.
template <class K, class KArg, class V, class VArg, bool HasValue>
class ZVMap : public ZVMapBase
{
public:
    using Node = ZVMapNode<K, V, HasValue>;

    // With allocateBuckets the table of 7 buckets is made now, otherwise with the first entry.
    explicit ZVMap(bool allocateBuckets = false)
    {
        if (allocateBuckets)
            ZVMapBase::InitHashTable(0, false);
    }
    ~ZVMap() override { RemoveAll(); }
    ZVMap(const ZVMap&) = delete;
    ZVMap& operator=(const ZVMap&) = delete;
    ZVMap(ZVMap&& other) noexcept { Swap(other); }

    ZVMap& operator=(ZVMap&& other) noexcept
    {
        if (this != &other)
        {
            RemoveAll();
            Swap(other);
        }
        return *this;
    }

protected:
    // The order of the virtual functions is fixed.
    void FreeNode(ZVMapNodeBase* node) override { DestroyNode(static_cast<Node*>(node), true); }

    uint32_t GetBucket(const ZVMapNodeBase* node) const override
    {
        return Hash(static_cast<const Node*>(node)->Key) % static_cast<uint32_t>(m_bucketCount);
    }

    size_t GetNodeSize() const override { return sizeof(Node); }
    // Equal keys must have equal hashes.
    virtual uint32_t Hash(KArg key) const { return ZVMapKey<K, KArg>::Hash(key); }
    virtual bool Equal(KArg left, KArg right) const { return ZVMapKey<K, KArg>::Equal(left, right); }

    // Destroys the key and the value and frees the node. Does nothing if free is false, if node is null, or with a pool.
    virtual void DestroyNode(Node* node, bool free)
    {
        if (free && m_pool == nullptr)
            delete node;
    }

    // Returns a new node with a copy of the key and a default value, linked to nothing.
    virtual Node* NewNode(KArg key) { return m_pool != nullptr ? new (m_pool->Allocate()) Node(key) : new Node(key); }

public:
    bool Contains(KArg key) const { return FindNode(key) != nullptr; }

    // The entry of a key, or null.
    const Node* FindNode(KArg key) const
    {
        ZVMapNodeBase* const* const link = FindLink(key, Hash(key));
        return link != nullptr ? static_cast<const Node*>(*link) : nullptr;
    }

    // Copies the value of a key. False if there is no such key; value then stays as it was.
    bool Lookup(KArg key, V& value) const requires(HasValue)
    {
        const Node* const node = FindNode(key);
        if (node == nullptr)
            return false;
        value = node->Value;
        return true;
    }

    // The value of a key, or null.
    V* FindValue(KArg key) requires(HasValue)
    {
        Node* const node = const_cast<Node*>(FindNode(key));
        return node != nullptr ? &node->Value : nullptr;
    }

    const V* FindValue(KArg key) const requires(HasValue)
    {
        const Node* const node = FindNode(key);
        return node != nullptr ? &node->Value : nullptr;
    }

    // Sets the value of a key. A key that is already there keeps its first spelling.
    void SetAt(KArg key, VArg value) requires(HasValue) { FindOrInsert(key).Value = value; }

    // The value of a key, which is added with a default value if it is not there.
    V& operator[](KArg key) requires(HasValue) { return FindOrInsert(key).Value; }

    // Adds a key to a set; false if it was already there.
    bool Add(KArg key) requires(!HasValue)
    {
        const int32_t before = m_count;
        FindOrInsert(key);
        return m_count > before;
    }

    // Removes an entry; false if there is none. The key may be the entry's own.
    bool RemoveKey(KArg key)
    {
        ZVMapNodeBase** const link = FindLink(key, Hash(key));
        if (link == nullptr || *link == nullptr)
            return false;
        ZVMapNodeBase* const node = *link;
        *link = node->Next;
        --m_count;
        FreeNode(node);
        return true;
    }

    // Returns the entry at a position, or null at the end, and moves the position to the next one. The entry may then be removed.
    Node* GetNext(ZVMapPosition& position) { return static_cast<Node*>(TakeNext(position)); }
    const Node* GetNext(ZVMapPosition& position) const { return static_cast<const Node*>(TakeNext(position)); }

    // Sets whether nodes come from a pool with blocks of blockSize bytes. A pool reuses the memory of a removed entry only after
    // RemoveAll, and destroys neither keys nor values. Returns false and changes nothing while the map has entries.
    bool SetUsePool(bool use, int32_t blockSize = DefaultPoolBlockSize)
    {
        static_assert(std::is_trivially_destructible_v<Node>, "a pool destroys neither keys nor values");
        static_assert(alignof(Node) <= 8, "a pool aligns its nodes to 8 bytes");
        if (m_count > 0)
            return false;
        ReplacePool(use, blockSize > 0 ? static_cast<size_t>(blockSize) : 0);
        return true;
    }

    // For range-based loops over the entries, in the order of GetNext. No key may be added or removed during the loop.
    template <class NodeType>
    class Iterator
    {
    public:
        Iterator(const ZVMap& map, ZVMapPosition position) : m_map(&map), m_position(position) {}

        NodeType& operator*() const { return static_cast<NodeType&>(*m_position.Node); }
        NodeType* operator->() const { return &**this; }

        Iterator& operator++()
        {
            m_map->TakeNext(m_position);
            return *this;
        }

        bool operator==(std::default_sentinel_t) const { return m_position.Node == nullptr; }

    private:
        const ZVMap* m_map;
        ZVMapPosition m_position;
    };

    Iterator<Node> begin() { return {*this, GetFirstPosition()}; }
    Iterator<const Node> begin() const { return {*this, GetFirstPosition()}; }
    std::default_sentinel_t end() const { return {}; }

protected:
    // The entry of a key, which is added at the end of its chain if it is not there.
    Node& FindOrInsert(KArg key)
    {
        const uint32_t hash = Hash(key);
        ZVMapNodeBase** link = FindLink(key, hash);
        if (link != nullptr && *link != nullptr)
            return static_cast<Node&>(**link);

        if (GrowForOneMore())
            link = FindTail(hash);
        Node* const node = NewNode(key);
        *link = node;
        ++m_count;
        return *node;
    }

private:
    // Enough for several hundred nodes.
    static constexpr int32_t DefaultPoolBlockSize = 16384;

    // The link to the node of a key, or the end of its chain if the key is not there; null if there is no table.
    ZVMapNodeBase** FindLink(KArg key, uint32_t hash) const
    {
        if (m_bucketCount < 1)
            return nullptr;
        ZVMapNodeBase** link = BucketOf(hash);
        while (*link != nullptr && !Equal(static_cast<const Node*>(*link)->Key, key))
            link = &(*link)->Next;
        return link;
    }
};
