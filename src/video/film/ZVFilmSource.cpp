#include "video/film/ZVFilmSource.h"

#include "disc/language/LanguageCodes.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVPathLayout.h"
#include "system/log/ZVLog.h"

#include <algorithm>
#include <iterator>

namespace
{
// The name under which those who read the log look for the choice of the film.
constexpr wchar_t LogName[] = L"CZVVideoAnalyzeExtended::AnalyzeFile";
constexpr ZVLogSource Source {ZVLogCategory::Media, LogName};
constexpr ZVLogSource ClipSource {ZVLogCategory::Network, LogName};

constexpr wchar_t PlaylistExtension[] = L"mpls";

// Extensions are compared as they stand: one in upper case is that of an ordinary file.
constexpr const wchar_t* DiscExtensions[] = {L"bdmv", PlaylistExtension, L"bluray", L"bluray3d"};
constexpr const wchar_t* RefusedExtensions[] = {L"iso", L"ifo"};

constexpr wchar_t Separators[] = L"/\\";

template <size_t Count>
bool IsOneOf(const ZVString& extension, const wchar_t* const (&list)[Count])
{
    return std::ranges::find(list, extension.View()) != std::end(list);
}

ZVString GetAbsolute(const ZVString& path)
{
    return path.FindOneOf(Separators) == 0 ? path : ZVFileSystem::GetDirectoryWorking() + path;
}

// The folder of the disc that a playlist is in: that of PLAYLIST, with a slash at its end.
ZVString GetDiscFolder(const ZVString& playlist)
{
    ZVString path = GetAbsolute(playlist);
    path = path.Left(path.ReverseFindOneOf(Separators));
    return path.Left(path.ReverseFindOneOf(Separators) + 1);
}

std::unique_ptr<ZVBlurayHelper> ScanDisc(const ZVFilename& file, const ZVString& extension)
{
    auto disc = std::make_unique<ZVBlurayHelper>();
    if (extension != PlaylistExtension)
    {
        disc->SetFilename(file);
        return disc;
    }
    disc->SetFilename(ZVFilename::FromPath(GetDiscFolder(file.GetPathOnly())));
    disc->SelectPlaylist(file.GetNameAndExtension());
    return disc;
}

// The stream file of a title, or empty.
ZVString GetStreamFile(const BlurayPlaylist* playlist)
{
    const BlurayStreamClip* const clip = playlist == nullptr ? nullptr : playlist->GetReferenceClip();
    return clip == nullptr || clip->StreamFile == nullptr ? ZVString() : clip->StreamFile->Name;
}
}

ZVFilmSource::ZVFilmSource(const ZVFilename& file)
{
    const ZVString extension = file.GetExtension(true);
    if (IsOneOf(extension, DiscExtensions))
    {
        ChooseTitle(file, extension);
        return;
    }
    m_path = file.GetPathOnly();
    m_isFound = !IsOneOf(extension, RefusedExtensions);
    if (!m_isFound)
        Source.Log("Disc images and DVD folders are not analyzed here: %s", m_path);
}

void ZVFilmSource::ChooseTitle(const ZVFilename& file, const ZVString& extension)
{
    m_disc = ScanDisc(file, extension);
    m_path = GetStreamFile(m_disc->GetSelected());
    m_isFound = !m_path.IsEmpty();
    if (m_isFound)
        ClipSource.Log("Using '%s' as Blu-ray reference clip", m_path);
    else
        Source.Log("The disc has no title: %s", file.GetPathOnly());
}

std::optional<ZVString> ZVFilmSource::FindLanguage(int32_t pid) const
{
    const BlurayPlaylist* const title = GetTitle();
    // The number of a stream has 16 bits on a disc.
    const BlurayStream* const stream = title == nullptr ? nullptr : title->FindStream(static_cast<uint16_t>(pid));
    if (stream == nullptr)
        return {};
    return LanguageNameFromCode(stream->Language());
}
