#include "caller/tasks/RemoveCover.h"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace
{
namespace fs = std::filesystem;

constexpr char CoverKey[] = "Image File";

fs::path GetTemporaryFolder()
{
    const char* const data = getenv("ZV_DATA_DIR");
    const char* const home = getenv("HOME");
    if (data != nullptr && *data != '\0')
        return fs::path(data) / "Temp";
    return home == nullptr ? fs::path() : fs::path(home) / ".zivora" / "Generic" / "Temp";
}
}

void RemoveCover(nlohmann::json& values)
{
    const auto cover = values.find(CoverKey);
    if (cover == values.end())
        return;
    const fs::path file = cover->is_string() ? cover->get<std::string>() : std::string();
    std::error_code error;
    if (!file.empty() && fs::equivalent(file.parent_path(), GetTemporaryFolder(), error) &&
        fs::is_regular_file(fs::symlink_status(file, error)))
        fs::remove(file, error);
    values.erase(cover);
}
