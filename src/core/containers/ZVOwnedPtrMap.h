#pragma once

#include "core/containers/ZVMap.h"

#include <utility>

// A map to objects that it owns: an object is deleted when its entry is removed or when another object replaces it. V must be a
// complete type where the map is made.
template <class K, class KArg, class V, bool HasValue = true>
class ZVOwnedPtrMap : public ZVMap<K, KArg, V*, V*, HasValue>
{
    static_assert(HasValue, "the value is what the map owns");
    using Base = ZVMap<K, KArg, V*, V*, HasValue>;

public:
    explicit ZVOwnedPtrMap(bool allocateBuckets = false) : Base(allocateBuckets) {}
    ~ZVOwnedPtrMap() override { this->RemoveAll(); }
    ZVOwnedPtrMap(ZVOwnedPtrMap&&) noexcept = default;
    ZVOwnedPtrMap& operator=(ZVOwnedPtrMap&&) noexcept = default;

    // The object of a key, or null.
    V* Get(KArg key) const
    {
        V* const* const value = this->FindValue(key);
        return value != nullptr ? *value : nullptr;
    }

    // Hands an object, which may be null, to the map, and deletes the one that it replaces. If the call throws, the object still
    // belongs to the caller.
    void SetAt(KArg key, V* value)
    {
        V* const old = std::exchange(this->FindOrInsert(key).Value, value);
        if (old != value)
            delete old;
    }

    // The object of a key, which is added with null if it is not there. SetAt sets objects.
    V* operator[](KArg key) { return this->FindOrInsert(key).Value; }

protected:
    // The object is deleted here and not in DestroyNode, because that does nothing for the nodes of a pool.
    void FreeNode(ZVMapNodeBase* node) override
    {
        if (node == nullptr)
            return;
        delete std::exchange(static_cast<typename Base::Node*>(node)->Value, nullptr);
        Base::FreeNode(node);
    }
};
