#include "disc/aggregate/CMediaAggregate.h"

#include "disc/aggregate/CDvdFileOrder.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSearch.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace
{
struct AggregateKind
{
    int32_t Type;
    const wchar_t* Text;
    const wchar_t* Marker;
};

constexpr AggregateKind Kinds[] = {
    {CMediaAggregate::DVD,      L"dvd",      L"VIDEO_TS"},
    {CMediaAggregate::Bluray,   L"bluray",   L"BDMV"    },
    {CMediaAggregate::Bluray3D, L"bluray3d", L"BDMV"    },
};

constexpr const wchar_t* AggregateExtensions[] = {L"ifo", L"bdmv", L"bdmv3d"};
constexpr const wchar_t* DvdExtensions[] = {L"ifo", L"vob", L"bup"};
constexpr const wchar_t* BlurayExtensions[] = {L"bdmv", L"bdmv3d"};

constexpr wchar_t DvdMainFile[] = L"VIDEO_TS.IFO";
constexpr wchar_t DvdBackupFile[] = L"VIDEO_TS.BUP";
constexpr wchar_t BlurayMainFile[] = L"index.bdmv";

template <size_t Count>
bool IsOneOf(const ZVString& text, const wchar_t* const (&list)[Count])
{
    return std::any_of(list, list + Count, [&text](const wchar_t* item) { return text.IsEqual(item, false); });
}

ZVString BareName(const ZVString& path)
{
    return ZVFilename::FromPath(path).GetNameAndExtension();
}

// The path of a folder's file, whose name is looked for as it stands and then in any case; empty when there is none.
ZVString FindFile(const ZVString& folder, const wchar_t* name)
{
    if (ZVFileSystem::Exists(folder + name))
        return folder + name;
    ZVFileSearch search(folder, ZVFilename::FromPath(name).GetExtension());
    search.SetMaximumResults(CMediaAggregate::MaximumFiles);
    for (const ZVString& path : search.GetResults())
        if (BareName(path).IsEqual(name, false))
            return path;
    return {};
}

// Gives a whole file another name, unless there is such a file. Some file systems know the one call, some the other.
void RenameWithoutReplacing(const ZVNativePath& from, const ZVNativePath& to)
{
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) != 0)
    {
        // On a failure another worker was faster, or the folder cannot be changed: who looks again sees it.
        [[maybe_unused]] const int result = link(from, to);
        unlink(from);
    }
}

// Makes the main file of a DVD from its backup. The copy is made beside it, so that nobody ever sees half a file.
void RestoreMainFile(const ZVString& folder, const ZVString& backup)
{
    const ZVString copy = ZVFormat(L"%s.%s.%d.tmp", folder, DvdMainFile, getpid());
    if (ZVFileSystem::CopyFile(backup, copy))
        RenameWithoutReplacing(ZVNativePath(copy), ZVNativePath(folder + DvdMainFile));
}
}

int32_t CMediaAggregate::TypeFromText(const ZVString& text)
{
    const int32_t end = text.ReverseFind(L';');
    const ZVString name = end == -1 ? text : text.Left(end);
    for (const AggregateKind& kind : Kinds)
        if (name == kind.Text)
            return kind.Type;
    return NoAggregate;
}

int32_t CMediaAggregate::GetType(const ZVFilename& name, const ZVString& extension)
{
    const int32_t type = name.GetIntegerProperty(L"MediaAggregate", NoAggregate);
    if (type != NoAggregate)
        return type;
    ZVString text = name.GetProperty(ZVFilename::FileTypeProperty);
    ZVString folded = text;
    folded.MakeLower();
    if (folded.Find(L"bluray") != -1 && extension == L"bdmv3d")
        text = L"bluray3d";
    return TypeFromText(text);
}

ZVString CMediaAggregate::FindDvdMainFile(const ZVString& folder)
{
    const ZVString path = ZVPathLayout::WithClosingSlash(folder);
    const ZVString mainFile = FindFile(path, DvdMainFile);
    if (!mainFile.IsEmpty())
        return mainFile;
    const ZVString backup = FindFile(path, DvdBackupFile);
    if (backup.IsEmpty())
        return {};
    RestoreMainFile(path, backup);
    return FindFile(path, DvdMainFile);
}

ZVString CMediaAggregate::GetMarker(int32_t type, bool withSlashes)
{
    for (const AggregateKind& kind : Kinds)
        if (kind.Type == type)
            return withSlashes ? ZVFormat(L"/%s/", kind.Marker) : ZVString(kind.Marker);
    return {};
}

bool CMediaAggregate::IsAggregateExtension(const ZVString& extension)
{
    return IsOneOf(extension, AggregateExtensions);
}

bool CMediaAggregate::IsDvdExtension(const ZVString& extension)
{
    return IsOneOf(extension, DvdExtensions);
}

bool CMediaAggregate::IsBlurayExtension(const ZVString& extension)
{
    return IsOneOf(extension, BlurayExtensions);
}

bool CMediaAggregate::Set(int32_t type, const wchar_t* mainFile)
{
    Type = type;
    MainFile = mainFile;
    return type != NoAggregate;
}

bool CMediaAggregate::DetectInFolder(const ZVString& folder)
{
    Set(NoAggregate, L"");
    if (folder.IsEmpty())
        return false;
    m_folder = ZVPathLayout::WithClosingSlash(folder);
    const ZVString dvdFile = FindDvdMainFile(m_folder);
    if (!dvdFile.IsEmpty())
        return Set(DVD, BareName(dvdFile));
    if (!ZVFileSystem::Exists(m_folder + BlurayMainFile))
        return false;
    const bool is3D = ZVFileSystem::IsDirectory(ZVFormat(L"%s\\STREAM\\SSIF", m_folder));
    return Set(is3D ? Bluray3D : Bluray, BlurayMainFile);
}

bool CMediaAggregate::Detect(const wchar_t* name)
{
    Set(NoAggregate, L"");
    if (name == nullptr || *name == L'\0')
        return false;
    const ZVFilename filename {ZVString(name)};
    const ZVString extension = filename.GetExtension();
    if (!IsDvdExtension(extension) && !IsBlurayExtension(extension))
    {
        const int32_t type = GetType(filename, extension);
        if (type > NoAggregate)
        {
            m_folder = filename.GetDirectory();
            return Set(type, filename.GetNameAndExtension());
        }
    }
    return DetectInFolder(filename.GetDirectory());
}

ZVString CMediaAggregate::GetRootFolder() const
{
    ZVString folder = m_folder;
    folder.MakeLower();
    ZVString marker = GetMarker(Type, true);
    marker.MakeLower();
    const int32_t position = marker.IsEmpty() ? -1 : folder.FindLastOf(marker);
    return position == -1 ? m_folder : m_folder.Left(position + 1);
}

void CMediaAggregate::GetFiles(ZVStringArray& out, bool recursive) const
{
    ZVFileSearch search(GetRootFolder(), L"", recursive);
    search.SetMaximumResults(MaximumFiles);
    if (Type == DVD)
        for (const wchar_t* const extension : DvdExtensions)
            search.AddFilter(extension);
    if (Type == DVD)
        CDvdFileOrder::Append(search.GetResults(), out);
    else
        search.GetResults(out);
}

int64_t CMediaAggregate::GetTotalSize(bool recursive) const
{
    ZVStringArray files;
    GetFiles(files, recursive);
    int64_t size = 0;
    for (const ZVString& file : files)
        size += std::max<int64_t>(ZVFileSystem::GetFileSize(file), 0);
    return size;
}
