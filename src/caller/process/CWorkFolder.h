#pragma once

#include <filesystem>

// A folder of its own for the files of the workers' runs, below the folder for temporary files. It goes with the object.
class CWorkFolder
{
public:
    // Throws std::filesystem::filesystem_error if it cannot be made.
    CWorkFolder();
    CWorkFolder(const CWorkFolder&) = delete;
    CWorkFolder& operator=(const CWorkFolder&) = delete;
    ~CWorkFolder();

    const std::filesystem::path& GetPath() const { return m_path; }

private:
    std::filesystem::path m_path;
};
