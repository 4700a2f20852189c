#include "caller/film/FindDiscFile.h"

namespace
{
// Of a Blu-ray disc and of a DVD.
constexpr const char* DiscFiles[] = {"BDMV/index.bdmv", "VIDEO_TS/VIDEO_TS.IFO"};
}

std::string FindDiscFile(const std::filesystem::path& folder)
{
    std::error_code ignored;
    for (const char* const file : DiscFiles)
        if (std::filesystem::is_regular_file(folder / file, ignored))
            return file;
    return {};
}
