#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// A temporary folder, and the working folder of the process while it lives.
class WorkFolder
{
public:
    WorkFolder()
    {
        std::string path = std::filesystem::temp_directory_path() / "zv-process-XXXXXX";
        m_folder = mkdtemp(path.data());
        std::filesystem::current_path(m_folder);
    }
    ~WorkFolder()
    {
        std::filesystem::current_path(m_before);
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    std::string PathOf(const std::string& name) const { return m_folder / name; }

    static std::string Read(const std::string& name)
    {
        std::ifstream file(name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static void Write(const std::string& name, const std::string& content) { std::ofstream(name, std::ios::binary) << content; }

private:
    const std::filesystem::path m_before = std::filesystem::current_path();
    std::filesystem::path m_folder;
};
