#pragma once

#include "caller/files/CDescriptor.h"

#include <filesystem>
#include <string>

// A folder of its own for the files of the workers' runs, below the folder for temporary files. It goes with the object; one that a killed
// program left is removed by the next.
class CWorkFolder
{
public:
    // Throws std::runtime_error if it cannot be made.
    CWorkFolder();
    CWorkFolder(const CWorkFolder&) = delete;
    CWorkFolder& operator=(const CWorkFolder&) = delete;
    ~CWorkFolder();

    const std::filesystem::path& GetPath() const { return m_path; }
    // Whether a small file can still be written there.
    bool HasSpace() const;
    // A new name in it.
    std::filesystem::path MakeName(const std::string& start, const std::string& extension) const;

private:
    std::filesystem::path m_path;
    CDescriptor m_lock;
    mutable uint64_t m_count = 0;
};
