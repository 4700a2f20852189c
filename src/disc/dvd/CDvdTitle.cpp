#include "disc/dvd/CDvdTitle.h"

#include "core/containers/ZVStringArray.h"
#include "disc/aggregate/CMediaAggregate.h"
#include "disc/dvd/CDvdTitleInfo.h"
#include "system/file/ZVFileSearch.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVPathLayout.h"

#include <array>

namespace
{
constexpr wchar_t PartExtension[] = L"vob";
// The information of a set, and its backup.
constexpr const wchar_t* InfoExtensions[] = {L"ifo", L"bup"};

constexpr int32_t MaximumNumber = 99;
constexpr int32_t MaximumPart = 9;

// The number of a decimal digit, or -1.
int32_t DigitOf(wchar_t character)
{
    return character >= L'0' && character <= L'9' ? character - L'0' : -1;
}

// The files of a title set: paths, of which some are empty.
struct TitleSet
{
    std::array<CDvdTitle::Part, MaximumPart> Parts;
    std::array<ZVString, std::size(InfoExtensions)> Infos;
    int64_t Size = 0;
};

// Sorts a folder's files by their names, in any case: VTS_nn_1.VOB to VTS_nn_9.VOB, VTS_nn_0.IFO and VTS_nn_0.BUP.
class TitleSets
{
public:
    void Take(const ZVString& path)
    {
        const ZVFilename filename = ZVFilename::FromPath(path);
        const ZVString name = filename.GetNameOnly();
        constexpr int32_t NameLength = 8;  // of VTS_01_1
        if (name.GetLength() != NameLength || !name.StartsWith(L"VTS_", false) || name[6] != L'_')
            return;
        const int32_t tens = DigitOf(name[4]);
        const int32_t ones = DigitOf(name[5]);
        const int32_t part = DigitOf(name[7]);
        if (tens < 0 || ones < 0 || part < 0 || tens + ones == 0)
            return;
        Take(m_sets[static_cast<size_t>(tens * 10 + ones)], part, filename);
    }

    // The number of the largest set; 0 when all are empty.
    int32_t FindLargest() const
    {
        int32_t largest = 0;
        for (int32_t number = 1; number <= MaximumNumber; ++number)
            if (Get(number).Size > Get(largest).Size)
                largest = number;
        return largest;
    }

    const TitleSet& Get(int32_t number) const { return m_sets[static_cast<size_t>(number)]; }

private:
    // Of names that differ only in their case the first one counts.
    static void Take(TitleSet& set, int32_t part, const ZVFilename& file)
    {
        const ZVString extension = file.GetExtension();
        if (part > 0 && extension.IsEqual(PartExtension, false))
            TakePart(set, set.Parts[static_cast<size_t>(part - 1)], file.GetFilename());
        for (size_t index = 0; part == 0 && index < std::size(InfoExtensions); ++index)
            if (extension.IsEqual(InfoExtensions[index], false) && set.Infos[index].IsEmpty())
                set.Infos[index] = file.GetFilename();
    }

    static void TakePart(TitleSet& set, CDvdTitle::Part& part, const ZVString& path)
    {
        const int64_t size = ZVFileSystem::GetFileSize(path);
        // The sizes of sparse files may come to more than a number holds.
        if (size <= 0 || part.Size != 0 || size > INT64_MAX - set.Size)
            return;
        part = {path, size};
        set.Size += size;
    }

    std::array<TitleSet, MaximumNumber + 1> m_sets;
};

// The folder within a folder that holds the files of a DVD, by its name in any case; empty when there is none.
ZVString FindSubfolder(const ZVString& folder)
{
    const ZVString marker = CMediaAggregate::GetMarker(CMediaAggregate::DVD, false) + L"/";
    if (ZVFileSystem::IsDirectory(folder + marker))
        return folder + marker;
    ZVFileSearch search(folder);
    search.SetIncludeFolders(true);
    search.SetMaximumResults(CMediaAggregate::MaximumFiles);
    for (const ZVString& path : search.GetResults())
        if (path.EndsWith(L"/" + marker, false))
            return path;
    return {};
}

// The folder of a local path, with a "/" at its end.
ZVString FolderOf(const ZVString& path)
{
    if (ZVFileSystem::IsDirectory(path))
        return ZVPathLayout::WithClosingSlash(path);
    const ZVString folder = ZVFilename::FromPath(path).GetDirectory();
    return folder.IsEmpty() ? ZVString(L"./") : folder;
}

bool IsDvdFolder(const ZVString& folder)
{
    return !folder.IsEmpty() && !CMediaAggregate::FindDvdMainFile(folder).IsEmpty();
}
}

ZVString CDvdTitle::FindFolder(const ZVFilename& name)
{
    ZVString path = name.GetFilename();
    ZVFilename::ClearFileScheme(path);
    if (path.IsEmpty() || ZVFilename::IsRemote(path))
        return {};
    const ZVString folder = FolderOf(path);
    if (IsDvdFolder(folder))
        return folder;
    const bool saysSo = CMediaAggregate::GetType(name, name.GetExtension()) == CMediaAggregate::DVD;
    // A film that lies beside the folder of a DVD is still a film.
    if (!saysSo && !ZVFileSystem::IsDirectory(path))
        return {};
    const ZVString subfolder = FindSubfolder(folder);
    if (IsDvdFolder(subfolder))
        return subfolder;
    if (!saysSo)
        return {};
    return subfolder.IsEmpty() ? folder : subfolder;
}

bool CDvdTitle::Open(const ZVString& path)
{
    *this = CDvdTitle();
    ZVFileSearch search(FolderOf(path));
    search.SetMaximumResults(CMediaAggregate::MaximumFiles);
    TitleSets sets;
    for (const ZVString& file : search.GetResults())
        sets.Take(file);
    Number = sets.FindLargest();
    const TitleSet& set = sets.Get(Number);
    for (const Part& part : set.Parts)
        if (part.Size > 0)
            Parts.Add(part);

    CDvdTitleInfo info;
    for (const ZVString& infoFile : set.Infos)
        if (!infoFile.IsEmpty() && info.Load(infoFile))
            break;
    Duration = info.Duration;
    Chapters = info.Chapters;
    return Number != 0;
}

int64_t CDvdTitle::GetSize() const
{
    int64_t size = 0;
    for (const Part& part : Parts)
        size += part.Size;
    return size;
}
