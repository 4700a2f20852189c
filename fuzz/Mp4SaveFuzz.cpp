// The bytes of an MP4, QuickTime or HEIF file on the disk, whose tags and XMP are changed and which is saved, once by itself and once
// with a copy of itself behind it. What was saved must be whole: its tags are told, and its chunks lie where it says. A film that is
// refused must be as it was, and nothing may lie beside it.

#include "BrokenTree.h"
#include "Require.h"
#include "core/property/ZVPropertyMap.h"
#include "mp4/CMp4File.h"
#include "mp4/OpenMp4File.h"
#include "mp4/heif/MetadataItemKind.h"
#include "mp4/samples/CChunkOffsetAtomBase.h"
#include "mp4/save/ForEachAtom.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

constexpr wchar_t TagName[] = L"Comment";
constexpr wchar_t TagValue[] = L"A text that moves the media";

constexpr uint8_t XMP[] = "<xmp of some bytes/>";

// The first byte of each chunk, or nothing where the file has none, for each table in the order of the file.
using Chunks = std::vector<std::vector<std::string>>;

constexpr size_t MaximumChunks = 10'000;  // of a table; more would only take time

// A folder in memory where there is one, with the film and the folders of the library in it. It goes when the process ends.
class Folder
{
public:
    Folder()
    {
        std::string name = (fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) / "zv-save-XXXXXX";
        Require(mkdtemp(name.data()) != nullptr);
        m_path = name;
        fs::create_directory(m_path / "films");
        setenv("ZV_DATA_DIR", (m_path / "data").c_str(), 1);
    }
    ~Folder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }

    fs::path GetFilm() const { return m_path / "films" / "film.mov"; }

    // Nothing lies beside the film, and no file was left in the library's folder for temporary ones.
    bool IsClean() const
    {
        const auto isFile = [](const fs::directory_entry& entry) { return entry.is_regular_file(); };
        const auto count = std::ranges::count_if(fs::recursive_directory_iterator(m_path), isFile);
        const fs::path logs = m_path / "data" / "Logs";
        const auto logCount = fs::exists(logs) ? std::ranges::count_if(fs::directory_iterator(logs), isFile) : 0;
        return count - logCount == 1;
    }

private:
    fs::path m_path;
};

std::string ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool OpenFilm(CMp4File& film, const fs::path& path)
{
    return OpenMp4File(film, ZVFilename::FromPath(ZVNativePath::ToText(path.c_str())), L"mov");
}

Chunks GetChunks(const CMp4File& film, const std::string& bytes)
{
    Chunks chunks;
    for (const CChunkOffsetAtomBase* const table : FindAtoms<CChunkOffsetAtomBase>(film.GetRootAtoms()))
    {
        std::vector<std::string>& starts = chunks.emplace_back();
        const size_t count = std::min<size_t>(table->GetChunkCount(), MaximumChunks);
        for (uint32_t chunk = 0; chunk < count; ++chunk)
            starts.push_back(bytes.substr(std::min<size_t>(table->GetOffset(chunk), bytes.size()), 1));
    }
    return chunks;
}

void RequireTag(CMp4File& film)
{
    ZVPropertyMap tags;
    film.GetTags(tags);
    Require(tags.GetString(TagName) == TagValue);
    if (tags.IsSet(L"Image File"))
        ZVFileSystem::DeleteFile(tags.GetString(L"Image File"));
}

// A chunk may lie in the part of an mdat that a cut film lacks.
void RequireSameChunks(const Chunks& before, const Chunks& after)
{
    Require(before.size() == after.size());
    for (size_t table = 0; table < before.size(); ++table)
        Require(before[table] == after[table]);
}

// Puts a film in its place, changes and saves it.
void Save(const Folder& folder, const std::string& bytes)
{
    std::ofstream(folder.GetFilm(), std::ios::binary) << bytes;
    CMp4File film;
    if (!OpenFilm(film, folder.GetFilm()))
        return;
    const Chunks before = GetChunks(film, bytes);
    const bool isSet = film.SetTag(TagName, TagValue);
    film.SetMetadataItem(MetadataItemKind::XMP, XMP);
    const bool isSaved = film.Save();
    const std::string saved = ReadFile(folder.GetFilm());
    Require(isSaved || !film.GetLastError().IsEmpty());
    Require(isSaved || saved == bytes);
    Require(folder.IsClean());
    if (!isSaved)
        return;
    CMp4File again;
    Require(OpenFilm(again, folder.GetFilm()));
    RequireSameChunks(before, GetChunks(again, saved));
    if (isSet)
        RequireTag(again);
}

void MergeAndSave(const Folder& folder, const std::string& bytes)
{
    std::ofstream(folder.GetFilm(), std::ios::binary) << bytes;
    CMp4File film, second;
    if (!OpenFilm(film, folder.GetFilm()) || !OpenFilm(second, folder.GetFilm()))
        return;
    Chunks twice = GetChunks(film, bytes);
    if (!film.Append(second))
        return;
    const bool isSaved = film.Save();
    const std::string saved = ReadFile(folder.GetFilm());
    Require(isSaved || saved == bytes);
    Require(folder.IsClean());
    if (!isSaved)
        return;
    for (std::vector<std::string>& starts : twice)
    {
        const std::vector<std::string> once = starts;
        starts.insert(starts.end(), once.begin(), once.end());
    }
    CMp4File again;
    Require(OpenFilm(again, folder.GetFilm()));
    RequireSameChunks(twice, GetChunks(again, saved));
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Folder folder;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    Save(folder, bytes);
    MergeAndSave(folder, bytes);
    return 0;
}
