#include "mp4/CMp4File.h"

#include "core/property/ZVPropertyMap.h"
#include "mp4/CMDATSearch.h"
#include "mp4/CMp4Merger.h"
#include "mp4/CMp4Saver.h"
#include "mp4/CodecNames.h"
#include "mp4/MediaSubTypes.h"
#include "mp4/heif/CMetadataItemEditor.h"
#include "mp4/model/EncodeText.h"
#include "mp4/model/Exception.h"
#include "mp4/model/GetText.h"
#include "mp4/movie/CCopyrightAtom.h"
#include "mp4/movie/CMDATAtom.h"
#include "mp4/movie/CMOOVAtom.h"
#include "mp4/movie/CUUIDAtom.h"
#include "mp4/movie/CUdtaAtom.h"
#include "mp4/quicktime/CKeyedMetadata.h"
#include "mp4/tags/CCoverartAtom.h"
#include "mp4/tags/CILSTAtom.h"
#include "mp4/tags/CTagEditor.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace
{
constexpr uint32_t FTYP = FourCC("ftyp");
constexpr uint32_t MOOV = FourCC("moov");
constexpr uint32_t MDAT = FourCC("mdat");
constexpr uint32_t UUID = FourCC("uuid");
constexpr uint32_t UDTA = FourCC("udta");
constexpr uint32_t META = FourCC("meta");
constexpr uint32_t ILST = FourCC("ilst");

// The identifier of a uuid atom with a UITS payload.
constexpr uint8_t UITSIdentifier[] = {0x99, 0x45, 0x4e, 0x27, 0x96, 0x3a, 0x4b, 0x56,
                                      0x8e, 0x76, 0x1d, 0xb6, 0x8c, 0x89, 0x9c, 0xd4};

constexpr wchar_t UITSTag[] = L"UITS Payload";

bool HoldsUITS(const CAtom& atom)
{
    return atom.GetType() == UUID && std::ranges::equal(static_cast<const CUUIDAtom&>(atom).GetIdentifier(), UITSIdentifier);
}

// A meta atom that was understood, or null.
CContainerAtom* AsMeta(CAtom* atom)
{
    return atom == nullptr || atom->GetType() != META || atom->IsOpaque() ? nullptr : static_cast<CContainerAtom*>(atom);
}

// Sets a number that is known.
void SetPositive(ZVPropertyMap& map, const wchar_t* key, int64_t value)
{
    if (value > 0)
        map.SetInt64(key, value);
}

void SetPositive(ZVPropertyMap& map, const wchar_t* key, double value)
{
    if (value > 0)
        map.SetString(key, ZVString::FromDouble(value));
}
}

CMp4File::CMp4File(bool checkOverlap, int32_t, bool allowMissingMDAT)
    : m_checkOverlap(checkOverlap), m_allowMissingMDAT(allowMissingMDAT)
{
}

CMp4File::~CMp4File() = default;

bool CMp4File::Verify()
{
    try
    {
        if (!FindParts())
            return false;
        if (m_mdatList.GetCount() == 0)
            RecoverMDAT();
        if (m_mdatList.GetCount() == 0 && !m_allowMissingMDAT)
            return Fail(L"Missing MDAT Atom");
        m_moov->Verify(m_mdatList, m_checkOverlap);
        m_isVerified = true;
        return true;
    }
    catch (const Exception* exception)
    {
        SetLastError(exception->Message);
        throw;
    }
}

bool CMp4File::Save()
{
    const auto save = [this]
    {
        if (GetFilename().GetPathOnly().IsEmpty() || !IsOpen())
            return Fail(L"There is no open file to save");
        if (!m_isVerified)
            return Fail(L"The file was not verified as a film");
        CMp4Saver saver(
            {GetFilename().GetPathOnly(), GetVersion(), GetFileSize(), GetAtomsEnd(), GetRootAtoms(), m_allowMissingFTYP});
        saver.WriteNewFile();
        if (!AreTakenFilesSame())
            return Fail(L"A file that was merged into this one was changed after it was opened");
        Close();
        saver.ReplaceFile();
        return true;
    };
    return Guard(save);
}

void CMp4File::Close()
{
    ForgetParts();
    CMp4FileBase::Close();
}

void CMp4File::ForgetParts()
{
    m_isVerified = false;
    m_ftyp = nullptr;
    m_moov = nullptr;
    m_uits = nullptr;
    m_ilst = nullptr;
    m_qtMeta = nullptr;
    m_mdatList.RemoveAll();
}

bool CMp4File::FindParts()
{
    ForgetParts();
    for (CAtom* const atom : GetRootAtoms())
    {
        if (atom->GetType() == FTYP && std::exchange(m_ftyp, atom) != nullptr)
            return Fail(L"Too many FTYP atoms in file");
        if (atom->GetType() == MOOV && std::exchange(m_moov, static_cast<CMOOVAtom*>(atom)) != nullptr)
            return Fail(L"Too many MOOV atoms in file");
        if (atom->GetType() == MDAT)
            m_mdatList.Add(static_cast<CMDATAtom*>(atom));
        if (HoldsUITS(*atom) && std::exchange(m_uits, static_cast<CUUIDAtom*>(atom)) != nullptr)
            return Fail(L"Too many UITS payload atoms in file");
    }
    if (m_ftyp == nullptr && !m_allowMissingFTYP)
        return Fail(L"Missing FTYP Atom");
    return m_moov != nullptr || Fail(L"Missing MOOV Atom");
}

// A recording that was not finished has its media behind bytes that are no atoms.
void CMp4File::RecoverMDAT()
{
    int64_t from = GetAtomsEnd();
    CMDATSearch search(GetStream());
    while (const std::optional<int64_t> start = search.FindNextMDAT(from))
    {
        GetReader().Seek(*start);
        std::unique_ptr<CAtom> atom = CAtom::Read(GetReader(), nullptr, UINT64_MAX);
        if (atom == nullptr)
        {
            // Behind the first character of the type.
            from = *start + 5;
            continue;
        }
        if (atom->GetType() == MDAT)
            m_mdatList.Add(static_cast<CMDATAtom*>(atom.get()));
        AddRootAtom(std::move(atom));
        from = GetReader().GetPosition();
    }
}

// The list of tags, or null, and the udta that it is in, or that it would be in.
CILSTAtom* CMp4File::FindILST(CUdtaAtom*& udta)
{
    udta = nullptr;
    if (m_ilst != nullptr)
    {
        udta = static_cast<CUdtaAtom*>(&m_ilst->GetParent(META).GetParent(UDTA));
        return m_ilst;
    }
    for (CAtom* const child : m_moov->GetChildren())
    {
        if (child->GetType() != UDTA)
            continue;
        auto* const candidate = static_cast<CUdtaAtom*>(child);
        CContainerAtom* const meta = AsMeta(candidate->GetFirstChild(META));
        if (udta == nullptr || meta != nullptr)
            udta = candidate;
        m_ilst = meta == nullptr ? nullptr : static_cast<CILSTAtom*>(meta->GetFirstChild(ILST));
        if (m_ilst != nullptr)
            break;
    }
    return m_ilst;
}

// The metadata of QuickTime, whose values are found by keys, or null.
CContainerAtom* CMp4File::FindQTMeta()
{
    if (m_qtMeta != nullptr)
        return m_qtMeta;
    for (CAtom* const child : m_moov->GetChildren())
    {
        CContainerAtom* const meta = AsMeta(child);
        if (meta == nullptr || meta->GetFirstChild(FourCC("hdlr")) == nullptr || meta->GetFirstChild(FourCC("keys")) == nullptr)
            continue;
        m_qtMeta = meta;
        break;
    }
    return m_qtMeta;
}

bool CMp4File::Append(CMp4File& second)
{
    if (this == &second)
        return Fail(L"A file cannot be merged with itself");
    if (m_moov == nullptr || second.m_moov == nullptr)
        return Fail(L"Only files that were verified can be merged");
    return Guard(
        [&]
        {
            AppendMovie(second);
            return true;
        });
}

void CMp4File::AppendMovie(CMp4File& second)
{
    const CMp4Merger merger({GetRootAtoms(), *m_moov, m_mdatList}, {second.GetRootAtoms(), *second.m_moov, second.m_mdatList});
    std::unique_ptr<CMOOVAtom> movie = merger.MergeMovies();
    CMDATAtom* const target = merger.GetTarget();
    const size_t count = target == nullptr ? 0 : target->GetAppendedCount();
    CAtom& merged = *movie;
    std::unique_ptr<CAtom> before;
    MakeRoomFor(second);
    try
    {
        for (CMDATAtom* const mdat : second.m_mdatList)
            target->Append(*mdat);
        before = ReplaceRootAtom(*m_moov, std::move(movie));
        Verify();
    }
    catch (...)
    {
        if (target != nullptr)
            target->DropAppended(count);
        if (before != nullptr)
        {
            ReplaceRootAtom(merged, std::move(before));
            Verify();
        }
        throw;
    }
    TakeFile(second);
}

bool CMp4File::GetTags(ZVPropertyMap& map)
{
    return m_moov != nullptr && Guard([&] { return GetAllTags(map); });
}

bool CMp4File::GetAllTags(ZVPropertyMap& map)
{
    bool isFound = false;
    CUdtaAtom* udta;
    CILSTAtom* const ilst = FindILST(udta);
    if (const CAtom* const copyright = udta == nullptr ? nullptr : udta->GetFirstChild(FourCC("cprt")))
    {
        map.SetString(L"Copyright", static_cast<const CCopyrightAtom*>(copyright)->GetValue());
        isFound = true;
    }
    if (m_uits != nullptr)
    {
        map.SetString(UITSTag, GetText(m_uits->GetData().Text()));
        isFound = true;
    }
    if (ilst != nullptr)
        isFound = ilst->GetTags(map) || isFound;
    if (isFound)
        SetMediaSubType(map);
    if (CContainerAtom* const meta = FindQTMeta())
        isFound = CKeyedMetadata(*meta).GetTags(map) || isFound;
    return isFound;
}

bool CMp4File::SetTag(const ZVString& name, const ZVString& value)
{
    if (m_moov == nullptr)
        return Fail(L"There is no movie whose tags could be set");
    return Guard(
        [&]
        {
            if (name.IsEqual(UITSTag, false))
            {
                SetUITSPayload(value);
                return true;
            }
            CUdtaAtom* udta;
            CILSTAtom* const ilst = FindILST(udta);
            CTagEditor({*m_moov, udta, ilst, FindQTMeta()}).Set(name, value);
            return true;
        });
}

void CMp4File::SetUITSPayload(const ZVString& value)
{
    if (value.IsEmpty())
    {
        if (CUUIDAtom* const old = std::exchange(m_uits, nullptr))
            RemoveRootAtom(*old);
        return;
    }
    if (m_uits == nullptr)
    {
        // At the end of the file nothing moves for it.
        std::unique_ptr<CUUIDAtom> made = CUUIDAtom::MakeNew(UITSIdentifier);
        CUUIDAtom* const uits = made.get();
        AddRootAtom(std::move(made));
        m_uits = uits;
    }
    const std::string bytes = EncodeText(value.View());
    m_uits->SetData(AsBytes(bytes));
}

bool CMp4File::SetMetadataItem(MetadataItemKind kind, std::span<const uint8_t> bytes)
{
    if (!m_isVerified)
        return Fail(L"The file was not verified as a film");
    return Guard(
        [&]
        {
            CContainerAtom& meta = CMetadataItemEditor::FindMeta(GetRootAtoms());
            CMetadataItemEditor editor(GetReader(), meta);
            editor.Set(kind, bytes);
            ReplaceRootAtom(meta, editor.TakeMeta());
            return true;
        });
}

bool CMp4File::GetImageFile(ZVFilename& filename)
{
    return m_moov != nullptr && Guard([&] { return WriteImage(filename); });
}

bool CMp4File::WriteImage(ZVFilename& filename)
{
    CContainerAtom* const meta = FindQTMeta();
    if (meta != nullptr && CKeyedMetadata(*meta).GetImageFile(filename))
        return true;
    CUdtaAtom* udta;
    const CILSTAtom* const ilst = FindILST(udta);
    const CAtom* const cover = ilst == nullptr ? nullptr : ilst->GetFirstChild(FourCC("covr"));
    return cover != nullptr && static_cast<const CCoverartAtom*>(cover)->GetValue(filename);
}

bool CMp4File::GetFileInfo(ZVPropertyMap& map)
{
    return m_moov != nullptr && Guard([&] { return SetFileInfo(map); });
}

bool CMp4File::SetFileInfo(ZVPropertyMap& map) const
{
    const char mediaType = m_moov->GetMediaType();
    const bool isVideo = mediaType == 'v';
    if (!isVideo && mediaType != 'a')
        return false;
    const ZVString fileType = GetFilename().GetExtension(true);
    map.SetString(L"File Type", fileType);
    map.SetInt64(L"File Size", GetFileSize());
    const double duration =
        m_moov->GetTimescale() == 0 ? -1.0 : static_cast<double>(m_moov->GetDuration()) / m_moov->GetTimescale();
    SetPositive(map, L"Duration", duration);
    SetPositive(map, L"Sample Rate", int64_t {m_moov->GetSampleRate()});
    SetPositive(map, L"Channels", int64_t {m_moov->GetChannels()});
    SetPositive(map, L"Bit Depth", int64_t {m_moov->GetBitDepth()});
    map.SetString(L"Media Type", isVideo ? L"Video" : L"Audio");
    if (isVideo && m_moov->GetWidth() > 0 && m_moov->GetHeight() > 0)
    {
        map.SetInt64(L"Width", m_moov->GetWidth());
        map.SetInt64(L"Height", m_moov->GetHeight());
    }
    const int64_t described = isVideo ? 0 : m_moov->GetAudioAverageBitRate() / 1000;
    SetPositive(map, L"Bitrate", described != 0 ? described : GetBitrate(duration));
    if (isVideo)
        SetPositive(map, L"FPS", m_moov->GetFramesPerSecond());
    const ZVString audio = GetCodecName(m_moov->GetAudioObjectType());
    map.SetString(L"Compression", !isVideo ? audio
                                           : ZVFormat(L"%s video (video: %s, audio: %s)", fileType,
                                                      GetCodecName(m_moov->GetVideoObjectType()), audio));
    return true;
}

// Kilobits a second of all media, 0 without a duration.
int64_t CMp4File::GetBitrate(double duration) const
{
    if (duration <= 0)
        return 0;
    double bytes = 0;
    for (const CMDATAtom* const mdat : m_mdatList)
        bytes += static_cast<double>(mdat->GetDataSize());
    // The sizes and the duration may be anything.
    constexpr double Limit = 0x1p62;
    return static_cast<int64_t>(std::min(bytes * 8 / duration, Limit)) / 1000;
}
