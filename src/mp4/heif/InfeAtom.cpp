#include "mp4/heif/InfeAtom.h"

#include <string_view>

namespace
{
constexpr uint32_t MIME = FourCC("mime");
constexpr uint32_t URI = FourCC("uri ");

// The media type of XMP (ISO 16684-1).
constexpr std::string_view XMPContentType = "application/rdf+xml";
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

bool InfeAtom::IsXMP() const
{
    const std::string_view contentType = m_contentType.Text();
    return m_itemType == MIME && contentType.substr(0, contentType.find('\0')) == XMPContentType;
}
