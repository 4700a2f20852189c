// Usage: make_film FILE MEGABYTES
//
// Makes a film for the script save-kills beside it: of that size, with its movie in front of its media and a chunk in each megabyte.

#include "mp4/samples/FilmBytes.h"

#include <cstdlib>
#include <fstream>
#include <random>

namespace
{
using namespace FilmBytes;

constexpr size_t Megabyte = 1'000'000;

Bytes MakeMovie(size_t firstChunk, size_t count)
{
    std::vector<uint64_t> offsets(count);
    for (size_t chunk = 0; chunk < count; ++chunk)
        offsets[chunk] = firstChunk + chunk * Megabyte;
    const Tables tables {.Times = Table("stts", {count, 1}, 2),
                         .SampleSizes = FixedSizes(Megabyte, static_cast<uint32_t>(count)),
                         .Offsets = Table("stco", offsets)};
    return Atom("ftyp", "isom" + Zeros(4)) + Movie(Track("vide", tables.Make())) + Number(8 + count * Megabyte, 4) + "mdat";
}

bool Make(const char* path, size_t megabytes)
{
    std::ofstream file(path, std::ios::binary);
    file << MakeMovie(MakeMovie(0, megabytes).size(), megabytes);
    std::mt19937_64 random(megabytes);
    std::vector<uint64_t> block(Megabyte / sizeof(uint64_t));
    for (size_t count = 0; count < megabytes; ++count)
    {
        std::ranges::generate(block, random);
        file.write(reinterpret_cast<const char*>(block.data()), Megabyte);
    }
    return file.flush().good();
}
}

int main(int count, char** arguments)
{
    return count == 3 && Make(arguments[1], strtoul(arguments[2], nullptr, 10)) ? 0 : 1;
}
