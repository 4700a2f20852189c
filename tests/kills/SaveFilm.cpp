// Films for the script save-kills beside it, which starts and kills this program:
//
//   save_film make FILE MEGABYTES    makes a film of that size, with its movie in front of its media and a chunk in each megabyte
//   save_film save FILE BYTES        makes the movie larger by a free atom of that many bytes, and saves the film
//
// What keeps a film from being saved goes to standard error.

#include "mp4/CMp4File.h"
#include "mp4/OpenMp4File.h"
#include "mp4/samples/FilmBytes.h"
#include "system/filename/ZVNativePath.h"
#include "system/library/ZVSiblingLibraries.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string_view>

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

bool Save(const char* name, size_t count)
{
    CMp4File film;
    const ZVString path = ZVNativePath::ToText(name);
    const ZVFilename filename = ZVFilename::FromPath(path);
    if (!OpenMp4File(film, filename, filename.GetExtension()))
    {
        fprintf(stderr, "cannot be read: %s\n", ZVNativePath(film.GetLastError()).Get());
        return false;
    }
    Tree added(Atom("free", Bytes(count, 'f')));
    for (CAtom* const root : film.GetRootAtoms())
        if (auto* const container = dynamic_cast<CContainerAtom*>(root);
            container != nullptr && root->GetType() == FourCC("moov"))
            container->AddChild(std::move(added.Roots.front()));
    const bool isSaved = film.Save();
    if (!isSaved)
        fprintf(stderr, "%s\n", ZVNativePath(film.GetLastError()).Get());
    return isSaved;
}
}

int main(int count, char** arguments)
{
    const std::string_view operation = count == 4 ? arguments[1] : "";
    const size_t size = count == 4 ? strtoul(arguments[3], nullptr, 10) : 0;
    if (operation == "make")
        return Make(arguments[2], size) ? 0 : 1;
    if (operation != "save" || !ZVSiblingLibraries::Get().LoadTools())
        return 2;
    const bool isSaved = Save(arguments[2], size);
    ZVSiblingLibraries::Get().UnloadAll();
    return isSaved ? 0 : 1;
}
