#include "mp4/samples/CSTSDAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/model/HaveSameBodies.h"

namespace
{
// The kind of media that an entry of a type is for.
struct EntryKind
{
    uint32_t Type;
    char MediaType;
};

// The list is complete on purpose: a track with entries of other types alone, such as HEVC, is of no known kind.
// clang-format off
constexpr EntryKind EntryKinds[] = {
    {FourCC("jpeg"), 'v'}, {FourCC("SVQ1"), 'v'}, {FourCC("SVQ3"), 'v'}, {FourCC("AVdn"), 'v'}, {FourCC("cvid"), 'v'},
    {FourCC("civd"), 'v'}, {FourCC("avc1"), 'v'}, {FourCC("mp4v"), 'v'}, {FourCC("rle "), 'v'}, {FourCC("vide"), 'v'},
    {FourCC("alac"), 'a'}, {FourCC("ac-3"), 'a'}, {FourCC("ec-3"), 'a'}, {FourCC("QDM2"), 'a'}, {FourCC("soun"), 'a'},
    {FourCC("ulaw"), 'a'}, {FourCC("sowt"), 'a'}, {FourCC("twos"), 'a'}, {FourCC("raw "), 'a'}, {FourCC("mp4a"), 'a'},
};
// clang-format on

constexpr char OtherKind = 'o';

char FindKind(uint32_t type)
{
    for (const EntryKind& kind : EntryKinds)
        if (kind.Type == type)
            return kind.MediaType;
    return OtherKind;
}
}

void CSTSDAtom::Verify(const CMDATList&, bool)
{
    m_mediaType = OtherKind;
    m_entry = nullptr;
    for (CAtom* const child : GetChildren())
    {
        const char kind = FindKind(child->GetType());
        if (kind == OtherKind || kind == m_mediaType)
            continue;
        if (m_mediaType != OtherKind)
            ThrowException(L"STSD atom has too many content children of conflicting types");
        m_mediaType = kind;
        // One that decides without being understood, AVdn, has nothing to tell.
        m_entry = child->IsOpaque() ? nullptr : static_cast<CSampleEntryAtom*>(child);
    }
}

void CSTSDAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CSTSDAtom&>(other);
    const int32_t count = GetChildren().GetCount();
    if (count != second.GetChildren().GetCount())
        ThrowException(L"STSD: Mismatched number of children");
    for (int32_t index = 0; index < count; ++index)
    {
        CAtom& own = *GetChildren()[index];
        CAtom& entry = *second.GetChildren()[index];
        if (!own.IsOpaque())
            own.Append(entry);
        else if (!HaveSameBodies(own, entry))
            ThrowException(L"STSD: The %s descriptions are different", own.GetTypeName());
    }
}

int32_t CSTSDAtom::GetWidth() const
{
    return m_entry == nullptr ? 0 : m_entry->GetWidth();
}

int32_t CSTSDAtom::GetHeight() const
{
    return m_entry == nullptr ? 0 : m_entry->GetHeight();
}

int32_t CSTSDAtom::GetChannels() const
{
    return m_entry == nullptr ? 0 : m_entry->GetChannels();
}

int32_t CSTSDAtom::GetSampleSize() const
{
    return m_entry == nullptr ? 0 : m_entry->GetSampleSize();
}

int32_t CSTSDAtom::GetSampleRate() const
{
    return m_entry == nullptr ? 0 : m_entry->GetSampleRate();
}

int32_t CSTSDAtom::GetObjectType() const
{
    return m_entry == nullptr ? 0 : m_entry->GetObjectType();
}

const CStreamDescription* CSTSDAtom::GetDescription() const
{
    const CESDescriptorAtom* const descriptor = m_entry == nullptr ? nullptr : m_entry->GetDescriptor();
    return descriptor == nullptr ? nullptr : &descriptor->GetDescription();
}

uint32_t CSTSDAtom::GetAverageBitRate() const
{
    const CStreamDescription* const description = GetDescription();
    return description == nullptr ? 0 : description->AverageBitRate;
}
