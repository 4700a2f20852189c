#include "mp4/heif/InfeAtom.h"

#include "mp4/model/EncodeText.h"

#include <string>
#include <string_view>

namespace
{
constexpr uint32_t EXIF = FourCC("Exif");
constexpr uint32_t MIME = FourCC("mime");
constexpr uint32_t URI = FourCC("uri ");

// The media type of XMP (ISO 16684-1).
constexpr std::string_view XMPContentType = "application/rdf+xml";

CAtomBytes MakeText(std::string_view text)
{
    return CAtomBytes(AsBytes(std::string(text) + '\0'));
}
}

std::unique_ptr<InfeAtom> InfeAtom::MakeNew(uint32_t itemID, MetadataItemKind kind)
{
    auto item = std::make_unique<InfeAtom>(Class, FourCC("infe"));
    item->SetVersion(itemID > UINT16_MAX ? 3 : 2);
    item->m_itemID = itemID;
    item->m_itemType = kind == MetadataItemKind::Exif ? EXIF : MIME;
    item->m_itemName = MakeText("");
    if (kind == MetadataItemKind::XMP)
        item->m_contentType = MakeText(XMPContentType);
    return item;
}

void InfeAtom::Fields(CFieldVisitor& visitor)
{
    CFullAtom::Fields(visitor);
    const uint8_t version = GetVersion();
    visitor.Field("item id", m_itemID, version > 2 ? 4 : 2);
    visitor.Field("protection index", m_protectionIndex);
    if (version >= 2)
        visitor.Field("item type", m_itemType);
    visitor.Text("item name", m_itemName);
    if (version < 2 || m_itemType == MIME)
    {
        visitor.Text("content type", m_contentType);
        visitor.Text("content encoding", m_contentEncoding);
    }
    else if (m_itemType == URI)
        visitor.Text("item URI", m_itemURI);
}

bool InfeAtom::IsExif() const
{
    return m_itemType == EXIF;
}

bool InfeAtom::IsXMP() const
{
    const std::string_view contentType = m_contentType.Text();
    return m_itemType == MIME && contentType.substr(0, contentType.find('\0')) == XMPContentType;
}
