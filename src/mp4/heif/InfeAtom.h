#pragma once

#include "mp4/heif/MetadataItemKind.h"
#include "mp4/model/CFullAtom.h"
#include "mp4/model/FourCC.h"

#include <cstdint>
#include <memory>

// infe: what one item is (ISO/IEC 14496-12, 8.11.6). The texts are in UTF-8 and keep the NUL that ends them, if there is one.
class InfeAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    // A new item of metadata, without a name.
    static std::unique_ptr<InfeAtom> MakeNew(uint32_t itemID, MetadataItemKind kind);

    void Fields(CFieldVisitor& visitor);

    uint32_t GetItemID() const { return m_itemID; }
    uint16_t GetProtectionIndex() const { return m_protectionIndex; }
    // 0 before version 2.
    uint32_t GetItemType() const { return m_itemType; }
    const CAtomBytes& GetItemName() const { return m_itemName; }
    const CAtomBytes& GetContentType() const { return m_contentType; }
    const CAtomBytes& GetContentEncoding() const { return m_contentEncoding; }
    const CAtomBytes& GetItemURI() const { return m_itemURI; }

    // An item that is not meant to be shown.
    bool IsHidden() const { return (GetFlags() & 1) != 0; }

    // The two kinds of metadata.
    bool IsExif() const;
    bool IsXMP() const;
    bool IsOfKind(MetadataItemKind kind) const { return kind == MetadataItemKind::Exif ? IsExif() : IsXMP(); }
    // Says that the bytes of the item stand as they are, not compressed.
    void DropContentEncoding() { m_contentEncoding = CAtomBytes(); }

private:
    uint32_t m_itemID = 0;
    uint16_t m_protectionIndex = 0;
    uint32_t m_itemType = 0;
    CAtomBytes m_itemName;
    CAtomBytes m_contentType;
    CAtomBytes m_contentEncoding;
    CAtomBytes m_itemURI;
};

inline constexpr CAtomClass InfeAtom::Class = MakeAtomClass<InfeAtom>("InfeAtom");
