#pragma once

#include "mp4/tags/TagBytes.h"

#include <initializer_list>

namespace AtomBytes
{
inline Bytes Key(const Bytes& key, const char* keyNamespace = "mdta")
{
    return Number(key.size() + 8, 4) + keyNamespace + key;
}

inline Bytes Keys(const std::vector<Bytes>& keys)
{
    Bytes entries;
    for (const Bytes& key : keys)
        entries += key;
    return FullAtom("keys", Number(keys.size(), 4) + entries);
}

// The item of the key with an index from 0 on.
inline Bytes Item(uint32_t index, const Bytes& value, uint32_t dataType = 1)
{
    return Tag(Number(index + 1, 4), value, dataType);
}

inline Bytes Handler(const char* type)
{
    return FullAtom("hdlr", Zeros(4) + type + Zeros(13));
}
}
