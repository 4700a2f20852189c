#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

// A file that is read line by line. A last line without an end, such as a killed process leaves, is not there.
class CLineFile
{
public:
    // Throws std::runtime_error that names the file and the reason.
    explicit CLineFile(const std::filesystem::path& path);

    // Sets the next line without its end. One that is longer than lines of plans and results can be is empty. False when there is none.
    // What cannot be read is thrown like a file that cannot be opened.
    bool GetNext(std::string& line);
    // Of the line that was set last: its number from 1, and the place in the file where it begins.
    int64_t GetNumber() const { return m_number; }
    std::streamoff GetStart() const { return m_start; }

    // Makes the line that begins at a place the next one.
    void GoTo(std::streamoff start);

private:
    bool ReadLine(std::string& line);

    std::filesystem::path m_path;
    std::ifstream m_file;
    int64_t m_number = 0;
    std::streamoff m_start = 0;
    std::streamoff m_next = 0;
};
