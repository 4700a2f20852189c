#include "caller/film/FindDiscFile.h"

namespace
{
struct Disc
{
    const char* Folder;
    const char* File;
};

constexpr Disc Discs[] = {
    {"BDMV",     "BDMV/index.bdmv"      },
    {"VIDEO_TS", "VIDEO_TS/VIDEO_TS.IFO"},
};
}

std::string FindDiscFile(const std::filesystem::path& folder)
{
    std::error_code ignored;
    for (const Disc& disc : Discs)
        if (std::filesystem::is_directory(folder / disc.Folder, ignored))
            return disc.File;
    return {};
}
