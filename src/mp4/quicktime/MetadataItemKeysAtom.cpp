#include "mp4/quicktime/MetadataItemKeysAtom.h"

#include "core/containers/ZVStringMap.h"
#include "mp4/model/GetText.h"
#include "mp4/quicktime/MetadataKeys.h"
#include "system/log/ZVLogScope.h"
#include "system/thread/ZVCriticalSection.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <span>

namespace
{
// A key or the name of a tag, and the type of the data.
struct NameAndType
{
    ZVString Name;
    uint32_t Type = 0;
};

using KeyMap = ZVStringMap<ZVString, true, NameAndType>;

// The known keys of one namespace.
struct Namespace
{
    KeyMap TagOfKey;
    KeyMap KeyOfTag;

    void Fill(std::span<const MetadataKey> keys)
    {
        for (const MetadataKey& key : keys)
        {
            TagOfKey.SetAt(key.Key, {key.Tag, key.DataType});
            KeyOfTag.SetAt(key.Tag, {key.Key, key.DataType});
        }
    }
};

struct KnownKeys
{
    Namespace MDTA;
    Namespace UDTA;
    ZVCriticalSection Section;
    // Set once the maps are filled. From then on they are read without the lock.
    std::atomic<bool> IsReady = false;
};

KnownKeys& GetKnownKeys()
{
    // Never destroyed, since a thread may still look keys up while the process ends.
    static KnownKeys& keys = *new KnownKeys;
    return keys;
}

// Null for a namespace that nothing is known of.
const Namespace* FindNamespace(uint32_t keyNamespace)
{
    MetadataItemKeysAtom::IntializeKeyMaps();
    const KnownKeys& keys = GetKnownKeys();
    if (keyNamespace == MetadataItemKeysAtom::MDTA)
        return &keys.MDTA;
    return keyNamespace == MetadataItemKeysAtom::UDTA ? &keys.UDTA : nullptr;
}

ZVString LookUp(const KeyMap& map, const ZVString& text, uint32_t& dataType)
{
    const NameAndType* const found = map.FindValue(text);
    if (found == nullptr)
        return {};
    dataType = found->Type;
    return found->Name;
}
}

void MetadataItemKeysAtom::IntializeKeyMaps()
{
    KnownKeys& keys = GetKnownKeys();
    if (keys.IsReady.load(std::memory_order_acquire))
        return;
    const ZVLogScope scope(ZVLogCategory::General, "MetadataItemKeysAtom::IntializeKeyMaps", false);
    const ZVCriticalSectionLock lock(keys.Section);
    if (keys.IsReady.load(std::memory_order_acquire))
    {
        scope.Log("someone got here faster than us");
        return;
    }
    keys.MDTA.Fill(MDTAKeys);
    keys.UDTA.Fill(UDTAKeys);
    keys.IsReady.store(true, std::memory_order_release);
}

ZVString MetadataItemKeysAtom::GetTagOfKey(uint32_t keyNamespace, const ZVString& key, uint32_t& dataType)
{
    const Namespace* const known = FindNamespace(keyNamespace);
    return known == nullptr ? ZVString() : LookUp(known->TagOfKey, key, dataType);
}

ZVString MetadataItemKeysAtom::GetKeyOfTag(uint32_t keyNamespace, const ZVString& tag, uint32_t& dataType)
{
    const Namespace* const known = FindNamespace(keyNamespace);
    return known == nullptr ? ZVString() : LookUp(known->KeyOfTag, tag, dataType);
}

void MetadataItemKeysAtom::Fields(CFieldVisitor& visitor)
{
    CFullAtom::Fields(visitor);
    if (visitor.If(m_hasCount, 4))
    {
        visitor.Field("entry count", m_count);
        visitor.Entries(m_keys, std::min(m_count, MaximumKeys), KeyHeaderSize + 1,
                        [&visitor](ItemKey& key)
                        {
                            visitor.Field("key size", key.Size);
                            visitor.Field("key namespace", key.Namespace);
                            visitor.Bytes("key", std::max<int64_t>(key.Size - KeyHeaderSize, 0), key.Value);
                        });
    }
    visitor.Rest("behind the keys", m_rest);
}

ZVString MetadataItemKeysAtom::GetKey(int32_t index) const
{
    return index >= 0 && index < GetKeyCount() ? GetText(m_keys[static_cast<size_t>(index)].Value.Text()) : ZVString();
}

uint32_t MetadataItemKeysAtom::GetNamespace(int32_t index) const
{
    return index >= 0 && index < GetKeyCount() ? m_keys[static_cast<size_t>(index)].Namespace : 0;
}

int32_t MetadataItemKeysAtom::FindKey(uint32_t keyNamespace, const ZVString& key, MissingKey missing)
{
    for (int32_t index = 0; index < GetKeyCount(); ++index)
        if (GetNamespace(index) == keyNamespace && GetKey(index) == key)
            return index;
    if (missing == MissingKey::Leave || m_keys.size() >= MaximumKeys || m_rest.GetCount() > 0)
        return -1;
    int32_t size = 0;
    const std::unique_ptr<const char[]> bytes(key.GetUTF8(&size));
    const std::span value(reinterpret_cast<const uint8_t*>(bytes.get()), static_cast<size_t>(size));
    m_keys.push_back({static_cast<uint32_t>(KeyHeaderSize + size), keyNamespace, CAtomBytes(value)});
    m_count = static_cast<uint32_t>(m_keys.size());
    return GetKeyCount() - 1;
}
