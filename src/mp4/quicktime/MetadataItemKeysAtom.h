#pragma once

#include "core/string/ZVString.h"
#include "mp4/model/CFullAtom.h"

#include <vector>

// What to do about a key that is not in the list.
enum class MissingKey
{
    Leave,
    Add,
};

// keys: what the numbers stand for that the items of the ilst beside it have for a type (QuickTime File Format, "Metadata item
// keys atom"). The tables of known keys are made with the first look-up; any thread may look a key up.
class MetadataItemKeysAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    // The namespaces of known keys.
    static constexpr uint32_t MDTA = FourCC("mdta");
    static constexpr uint32_t UDTA = FourCC("udta");

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor);

    // An index counts from 0; the item of a key has the type index + 1.
    int32_t GetKeyCount() const { return static_cast<int32_t>(m_keys.size()); }
    // Empty for an index out of range.
    ZVString GetKey(int32_t index) const;
    // 0 for an index out of range.
    uint32_t GetNamespace(int32_t index) const;
    // The index of a key, which is added at the end if it is missing and that is asked for; otherwise -1. A list that has reached
    // its bound, or has bytes behind its keys, takes no more.
    int32_t FindKey(uint32_t keyNamespace, const ZVString& key, MissingKey missing);

    // The tag of a known key with the type of its data; empty, with the type as it was, if the key is not known.
    static ZVString GetTagOfKey(uint32_t keyNamespace, const ZVString& key, uint32_t& dataType);
    // The reverse.
    static ZVString GetKeyOfTag(uint32_t keyNamespace, const ZVString& tag, uint32_t& dataType);

    // Makes the tables of known keys, if nobody has made them yet.
    static void IntializeKeyMaps();

private:
    // One entry of the list.
    struct ItemKey
    {
        uint32_t Size = 0;  // of all three fields
        uint32_t Namespace = 0;
        CAtomBytes Value;
    };

    // Of Size and Namespace. An entry that says that it is shorter has no value.
    static constexpr int64_t KeyHeaderSize = 8;
    // No more keys are looked at; the others are kept as they stand. Cameras write some dozen.
    static constexpr uint32_t MaximumKeys = 0x10000;

    bool m_hasCount = true;
    uint32_t m_count = 0;  // as it stands
    std::vector<ItemKey> m_keys;
    CAtomBytes m_rest;
};

inline constexpr CAtomClass MetadataItemKeysAtom::Class = MakeAtomClass<MetadataItemKeysAtom>("MetadataItemKeysAtom");
