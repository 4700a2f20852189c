#include "caller/tasks/CWorkerSettings.h"

#include <filesystem>

std::string FindWorker()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path() / "ZVWorker";
}
