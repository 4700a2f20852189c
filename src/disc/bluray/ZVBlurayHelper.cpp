#include "disc/bluray/ZVBlurayHelper.h"

#include "core/property/ZVPropertyMap.h"
#include "system/file/ZVFileSystem.h"
#include "system/loader/CFileLoader.h"
#include "system/log/ZVLogScope.h"

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Bluray, L"ZVBlurayHelper::SetFilename"};

// A title is longer than that.
constexpr int32_t MinimumSeconds = 1;

// Beside the BDMV folder a ripping program notes which playlists are the film. Paths may have either separator.
constexpr wchar_t DiscInfFile[] = L"..\\disc.inf";
constexpr wchar_t DiscInfKey[] = L"playlists=";
constexpr int64_t MaximumDiscInfSize = 1 << 20;

// The name of the playlist that a disc.inf asks for first, or empty.
ZVString ReadDiscInf(const ZVString& folder)
{
    const ZVString path = folder + DiscInfFile;
    CFileLoader loader;
    loader.SetStreaming(false);
    loader.SetAllowInternet(false);
    loader.SetLimits(MaximumDiscInfSize, true);
    ZVString text;
    if (!ZVFileSystem::Exists(path) || !loader.LoadText(ZVFilename::FromPath(path), text, ZVEncoding::Detect, false))
        return {};
    const int32_t start = text.Find(DiscInfKey);
    if (start == -1)
        return {};
    ZVString value = text.Mid(start + ZVString(DiscInfKey).GetLength()).GetBefore(L"\r\n", true);
    value.TrimWhitespace();
    const int32_t number = value.GetBefore(L",", true).GetBefore(L";", true).ToInt();
    return number > 0 ? ZVFormat(L"%05d.mpls", number) : ZVString();
}
}

void ZVBlurayHelper::SetFilename(const ZVFilename& filename)
{
    const ZVLogScope scope(Source, true);
    Filename = filename;
    SelectedIndex = -1;
    ZVString folder = filename.GetDirectory();
    if (folder.IsEmpty())
        folder = ZVFileSystem::GetDirectoryWorking();
    Playlists.SetOwns(false);
    Playlists.RemoveAll();
    Disc = std::make_unique<BDROM>(folder);
    scope.Log("Created BDROM object for path=%s", folder);
    Disc->Scan();
    scope.Log("Completed BDROM scan");
    Disc->GetSortedPlaylists(Playlists, MinimumSeconds);
    scope.Log("Found %d playlists and did the sorting.", Playlists.GetCount());

    const ZVString asked = GetPlaybackInfo();
    SelectedIndex = FindPlaylist(asked);
    if (SelectedIndex >= 0)
        return;
    if (!Playlists.IsEmpty())
    {
        SelectedIndex = 0;
        SelectPlaylist(ReadDiscInf(folder));
    }
    LogAbsence(asked);
}

// The title that the caller wants to go on with, or empty.
ZVString ZVBlurayHelper::GetPlaybackInfo() const
{
    ZVPropertyMap info;
    info.FromXML(Filename.GetProperty(L"PlaybackInfo"), L"XMLPH", 1.0);
    return info.GetString(L"BlurayPlaylist");
}

int32_t ZVBlurayHelper::FindPlaylist(const ZVString& fileName) const
{
    for (int32_t index = 0; index < Playlists.GetCount(); ++index)
        if (ZVFilename::FromPath(Playlists[index]->Name).GetNameAndExtension().IsEqual(fileName, false))
            return index;
    return -1;
}

void ZVBlurayHelper::SelectPlaylist(const ZVString& fileName)
{
    const int32_t index = FindPlaylist(fileName);
    if (index >= 0)
        SelectedIndex = index;
    else
        LogAbsence(fileName);
}

// Says why a title that was asked for is not there, and which one is taken.
void ZVBlurayHelper::LogAbsence(const ZVString& fileName) const
{
    if (fileName.IsEmpty())
        return;
    const BlurayPlaylist* const selected = GetSelected();
    Source.Log("%s is not taken, since %s. It is now: %s", fileName, Disc->GetReasonOfAbsence(fileName, MinimumSeconds),
               selected == nullptr ? ZVString(L"none") : selected->Name);
}

BlurayPlaylist* ZVBlurayHelper::GetSelected() const
{
    return SelectedIndex >= 0 && SelectedIndex < Playlists.GetCount() ? Playlists[SelectedIndex] : nullptr;
}
