#include "disc/bluray/BDROM.h"

#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVPathLayout.h"
#include "system/log/ZVLogScope.h"
#include "system/thread/ZVQSort.h"

#include <climits>
#include <cwchar>

namespace
{
constexpr wchar_t FilmIndexFile[] = L"FilmIndex.xml";
constexpr wchar_t InterleavedEnd[] = L".SSIF";

// Folders of copy protections that run programs of the disc.
constexpr const wchar_t* VmFolders[] = {L"BDSVM", L"SLYVM", L"ANYVM"};

// One of the listings of a disc, in the order in which they are made.
struct Listing
{
    std::unique_ptr<BlurayDirectoryList> BDROM::*List;
    const wchar_t* Folder;
    const wchar_t* Extension;
};

constexpr Listing Listings[] = {
    {&BDROM::RootList,     L"",         L""    },
    {&BDROM::BdjoList,     L"BDJO",     L""    },
    {&BDROM::ClipList,     L"CLIPINF",  L"clpi"},
    {&BDROM::PlaylistList, L"PLAYLIST", L"mpls"},
    {&BDROM::SnpList,      L"SNP",      L"mnv" },
    {&BDROM::StreamList,   L"STREAM",   L"m2ts"},
    {&BDROM::SsifList,     L"SSIF",     L"ssif"},
};

bool HoldsBytes(const ZVString& path, const wchar_t* folder)
{
    return BlurayDirectoryList(path, folder, L"").GetDirectorySize(L"") > 0;
}

// Makes a record of each listed file under its bare name.
template <class File>
void AddFiles(const BlurayDirectoryList& list, BlurayFileMap<File>& files)
{
    for (const ZVString& path : list.Files)
    {
        const ZVString name = ZVFilename::FromPath(path).GetNameAndExtension();
        if (name.IsEmpty())
            return;
        auto file = std::make_unique<File>(path);
        files.SetAt(name, file.get());
        file.release();
    }
}

// The reason why a playlist cannot be a title, or null when it can.
const wchar_t* FindFlaw(const BlurayPlaylist& playlist, int32_t minimumSeconds)
{
    const double length = playlist.GetTotalLength();
    // Whole seconds count.
    if (!(length >= minimumSeconds + 1.0))
        return L"it is too short";
    if (length >= static_cast<double>(INT32_MAX) + 1.0)
        return L"it is too long to be true";
    if (playlist.AudioStreamCount < 1)
        return L"it has no sound";
    if (playlist.VideoStreamCount < 1)
        return L"it has no picture";
    return playlist.HasLoops ? L"it plays a clip twice from the same place" : nullptr;
}
}

BDROM::BDROM(const ZVString& path)
{
    const ZVString folder = ZVPathLayout::WithClosingSlash(path);
    for (const Listing& listing : Listings)
        this->*listing.List = std::make_unique<BlurayDirectoryList>(folder, listing.Folder, listing.Extension);
    ZVFileSystem::GetVolumeInformation(folder, &VolumeLabel, nullptr);
    for (const wchar_t* const vmFolder : VmFolders)
        HasVmFolder = HasVmFolder || HoldsBytes(folder, vmFolder);
    HasBdjo = BdjoList->GetDirectorySize(L"") > 0;
    HasSnp = SnpList->GetDirectorySize(L"mnv") > 0;
    HasSsif = SsifList->GetDirectorySize(L"ssif") > 0;
    HasFilmIndex = ZVFileSystem::Exists(folder + FilmIndexFile);

    AddFiles(*PlaylistList, Playlists);
    AddFiles(*StreamList, StreamFiles);
    AddFiles(*ClipList, StreamClipFiles);
    AddFiles(*SsifList, InterleavedFiles);
}

void BDROM::Scan()
{
    const ZVLogScope scope(ZVLogCategory::Bluray, "BDROM::Scan", true);
    scope.Log("Scanning stream clip files...");
    for (auto& entry : StreamClipFiles)
        entry.Value->Scan();
    scope.Log("Scanning stream files...");
    FindInterleavedFiles();
    scope.Log("Scanning playlist files...");
    ScanPlaylists();
}

void BDROM::FindInterleavedFiles()
{
    for (auto& entry : StreamFiles)
    {
        const ZVString title = ZVFilename::FromPath(entry.Value->Name).GetNameOnly();
        if (BlurayInterleavedFile* const file = InterleavedFiles.Get(title + InterleavedEnd))
            entry.Value->InterleavedFile = file;
    }
}

// Discs hold the same title many times to hide it from programs that copy.
void BDROM::ScanPlaylists()
{
    BlurayScan scan;
    ZVStringMap<ZVString, true, ZVString> firstBySignature;
    for (auto& entry : Playlists)
    {
        ZVString signature;
        entry.Value->Scan(StreamFiles, StreamClipFiles, signature, scan);
        ZVString& kept = firstBySignature[signature];
        if (kept.IsEmpty())
            kept = entry.Key;
        else if (wcscmp(kept, entry.Key) < 0)
            m_duplicates.SetAt(entry.Key, kept);
        else
        {
            m_duplicates.SetAt(kept, entry.Key);
            kept = entry.Key;
        }
    }
    for (const auto& duplicate : m_duplicates)
        Playlists.RemoveKey(duplicate.Key);
    for (auto& entry : Playlists)
        entry.Value->Initialize(scan);
}

void BDROM::GetSortedPlaylists(ZVOwnedPtrArray<BlurayPlaylist>& playlists, int32_t minimumSeconds)
{
    playlists.RemoveAll();
    for (auto& entry : Playlists)
        if (FindFlaw(*entry.Value, minimumSeconds) == nullptr)
            playlists.Add(entry.Value);
    // In this thread: a disc has some hundred titles at most.
    if (playlists.GetCount() >= 2)
        ZVQSort<BlurayPlaylist*>(*this, false).Sort(playlists);
}

ZVString BDROM::GetReasonOfAbsence(const ZVString& fileName, int32_t minimumSeconds) const
{
    if (const ZVString* const kept = m_duplicates.FindValue(fileName))
        return ZVFormat(L"it shows the same as %s", *kept);
    const BlurayPlaylist* const playlist = Playlists.Get(fileName);
    const wchar_t* const flaw = playlist == nullptr ? nullptr : FindFlaw(*playlist, minimumSeconds);
    return flaw == nullptr ? L"the disc has no such playlist" : flaw;
}
