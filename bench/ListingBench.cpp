// Listing a large folder, against the same calls of the system without anything around them.

#include "RatioReport.h"
#include "system/file/ZVFileFinder.h"
#include "system/file/ZVFileSearch.h"
#include "system/library/ZVDescriptor.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <glob.h>
#include <string>
#include <sys/stat.h>

namespace
{
constexpr int FileCount = 100'000;

// A folder with that many empty files, made by the first benchmark that runs and removed at the end of the program.
class LargeFolder
{
public:
    static const std::string& Path()
    {
        static const LargeFolder s_folder;
        return s_folder.m_path;
    }

    LargeFolder(const LargeFolder&) = delete;
    LargeFolder& operator=(const LargeFolder&) = delete;

private:
    LargeFolder()
    {
        std::string name = std::filesystem::temp_directory_path() / "zvlisting-XXXXXX";
        m_path = std::string(mkdtemp(name.data())) + "/";
        for (int index = 0; index < FileCount; ++index)
            ZVDescriptor(open((m_path + "Recording " + std::to_string(index * 7919 % FileCount) + ".mkv").c_str(),
                              O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    }

    ~LargeFolder() { std::filesystem::remove_all(m_path); }

    std::string m_path;
};

void ListWithFinder(benchmark::State& state)
{
    const ZVFilename folder = ZVFilename::FromPath(ZVString::FromUTF8(LargeFolder::Path().c_str()));
    for (auto _ : state)
    {
        ZVFileFinder finder;
        finder.Find(folder);
        int64_t size = 0;
        for (ZVFileInfo info; finder.GetNext(info);)
            size += info.GetSize();
        benchmark::DoNotOptimize(size);
    }
}

void SearchByExtension(benchmark::State& state)
{
    const ZVString folder = ZVString::FromUTF8(LargeFolder::Path().c_str());
    for (auto _ : state)
    {
        ZVFileSearch search(folder, L"mkv", true);
        benchmark::DoNotOptimize(search.GetTotalSize());
    }
}

void ListWithGlob(benchmark::State& state)
{
    const std::string pattern = LargeFolder::Path() + "*";
    for (auto _ : state)
    {
        glob_t found {};
        glob(pattern.c_str(), GLOB_MARK, nullptr, &found);
        int64_t size = 0;
        for (size_t index = 0; index < found.gl_pathc; ++index)
        {
            struct stat status
            {
            };
            stat(found.gl_pathv[index], &status);
            size += status.st_size;
        }
        benchmark::DoNotOptimize(size);
        globfree(&found);
    }
}

ZV_COMPARE(ListFolder, 2.0, ListWithFinder, ListWithGlob, "glob and stat");
ZV_COMPARE(SearchFolder, 2.0, SearchByExtension, ListWithGlob, "glob and stat");
}
