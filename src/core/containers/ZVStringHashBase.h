#pragma once

#include "core/containers/ZVStringHash.h"

// A string reduced to its 64-bit hash. Two strings with the same hash are the same key.
template <bool CaseSensitive>
class ZVStringHashBase
{
public:
    ZVStringHashBase() = default;
    // The text may be null.
    explicit ZVStringHashBase(const wchar_t* text) : m_hash(ZVStringHash::Hash64<CaseSensitive>(text)) {}

    uint64_t GetValue() const { return m_hash; }
    // The hash of the key in a map.
    uint32_t GetHash() const { return static_cast<uint32_t>(m_hash); }
    friend bool operator==(ZVStringHashBase, ZVStringHashBase) = default;

private:
    uint64_t m_hash = 0;
};
