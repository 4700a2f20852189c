#include "RatioReport.h"
#include "core/property/ZVPropertyMap.h"
#include "mp4/CMp4File.h"

#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <taglib/mp4file.h>
#include <taglib/tag.h>
#include <unistd.h>
#include <vector>

namespace
{
// A film of two hours with 172,800 pictures, 337,500 frames of sound and some tags, which is made once and deleted at the end. A minute
// of it is encoded and repeated.
class Film
{
public:
    Film()
    {
        std::string folder = std::filesystem::temp_directory_path() / "zv-mp4-bench-XXXXXX";
        m_folder = mkdtemp(folder.data());
        const std::string minute = m_folder / "minute.nut";
        const std::string quiet = "ffmpeg -nostdin -loglevel error ";
        IsThere = system((quiet +
                          "-f lavfi -i testsrc2=s=64x64:r=24:d=60 -f lavfi -i anoisesrc=r=48000:d=60:a=0.01 -c:v libx264 "
                          "-preset ultrafast -c:a aac -b:a 32k " +
                          minute + " && " + quiet + "-stream_loop -1 -i " + minute + " -c copy -t 7200 -metadata title=Film " +
                          GetPath())
                             .c_str()) == 0;
    }
    Film(const Film&) = delete;
    Film& operator=(const Film&) = delete;
    ~Film() { std::filesystem::remove_all(m_folder); }

    std::string GetPath() const { return m_folder / "film.mp4"; }

    bool IsThere;

private:
    std::filesystem::path m_folder;
};

const Film& GetFilm()
{
    static const Film film;
    return film;
}

void ReadTags(benchmark::State& state)
{
    const ZVFilename filename = ZVFilename::FromPath(ZVString::FromUTF8(GetFilm().GetPath().c_str()));
    for (auto _ : state)
    {
        CMp4File file;
        ZVPropertyMap tags;
        if (!file.Open(filename) || !file.ReadAtoms() || !file.Verify() || !file.GetTags(tags))
            state.SkipWithError("the film was refused");
    }
}

uint32_t GetBig(const char* bytes)
{
    uint32_t value;
    memcpy(&value, bytes, sizeof value);
    return __builtin_bswap32(value);
}

// Swaps the bytes of all tables in a list of atoms.
void SwapTables(char* atoms, size_t size)
{
    constexpr std::string_view Containers = "moov trak mdia minf stbl";
    constexpr std::string_view Tables = "stts ctts stsc stsz stco stss";
    for (size_t position = 0; position + 8 <= size;)
    {
        const size_t length = GetBig(atoms + position);
        const std::string_view type(atoms + position + 4, 4);
        if (length < 8 || length > size - position)
            return;
        if (Containers.find(type) != std::string_view::npos)
            SwapTables(atoms + position + 8, length - 8);
        else if (Tables.find(type) != std::string_view::npos)
            for (size_t word = position + 8; word + 4 <= position + length; word += 4)
            {
                const uint32_t value = GetBig(atoms + word);
                memcpy(atoms + word, &value, sizeof value);
            }
        position += length;
    }
}

// What the work costs at the least: finds the moov, reads it in one piece and swaps the bytes of its tables.
void ReadTablesBare(benchmark::State& state)
{
    for (auto _ : state)
    {
        const int file = open(GetFilm().GetPath().c_str(), O_RDONLY | O_CLOEXEC);
        char header[8];
        for (off_t position = 0; pread(file, header, sizeof header, position) == sizeof header; position += GetBig(header))
        {
            if (memcmp(header + 4, "moov", 4) != 0)
                continue;
            std::vector<char> moov(GetBig(header));
            if (pread(file, moov.data(), moov.size(), position) != static_cast<ssize_t>(moov.size()))
                state.SkipWithError("the film is cut");
            SwapTables(moov.data(), moov.size());
            benchmark::DoNotOptimize(moov.data());
        }
        close(file);
    }
}

// A reader of tags that passes over the tables.
void ReadTagsTagLib(benchmark::State& state)
{
    for (auto _ : state)
    {
        TagLib::MP4::File file(GetFilm().GetPath().c_str(), false);
        if (!file.isValid() || file.tag()->title().isEmpty())
            state.SkipWithError("the film was refused");
    }
}

ZV_COMPARE(ReadMP4OfTwoHours, 1.2, ReadTags, ReadTablesBare, "one read and the bytes of the tables swapped");
// Beside a reader that does not look at the tables at all.
ZV_COMPARE(ReadMP4TagsOfTwoHours, 100, ReadTags, ReadTagsTagLib, "TagLib");
}
