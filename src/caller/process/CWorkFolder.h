#pragma once

#include "caller/files/CDescriptor.h"

#include <filesystem>
#include <string>

// A folder of its own for the files of the workers' runs, below the folder for temporary files. It goes with the object; one that a killed
// program left is removed by the next.
class CWorkFolder
{
public:
    // Throws std::filesystem::filesystem_error if it cannot be made.
    CWorkFolder();
    CWorkFolder(const CWorkFolder&) = delete;
    CWorkFolder& operator=(const CWorkFolder&) = delete;
    ~CWorkFolder();

    const std::filesystem::path& GetPath() const { return m_path; }
    // A new folder in it, for the files of one task: a worker may write in the folder of its result, and is to reach none of another.
    // Where it cannot be made, the worker finds that out and says so.
    std::filesystem::path MakeTaskFolder() const;

private:
    std::filesystem::path m_path;
    CDescriptor m_lock;
    mutable uint64_t m_count = 0;
};
