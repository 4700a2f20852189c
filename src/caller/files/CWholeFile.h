#pragma once

#include "caller/files/CDescriptor.h"

#include <filesystem>
#include <string>
#include <string_view>

// A file that is written whole or not at all: beside its name first, and renamed when it is finished. What was there before stays until
// then, and for good when anything fails. A device or a pipe is no file: it gets the bytes as they come, and so does what is open already, such
// as /dev/stdout, whatever it leads to, from where it stands. No name of the system, below /dev or /proc, is made or replaced.
//
// Failures are thrown as std::runtime_error that names the file and the reason.
class CWholeFile
{
public:
    explicit CWholeFile(const std::filesystem::path& path);
    CWholeFile(const CWholeFile&) = delete;
    CWholeFile& operator=(const CWholeFile&) = delete;
    // Removes what was written if it was not finished.
    ~CWholeFile();

    void Write(std::string_view bytes);
    // Gives the file its name.
    void Finish();

private:
    void Flush();
    [[noreturn]] void Fail() const;

    std::filesystem::path m_path;
    std::string m_temporary;  // empty once the file has its name
    std::string m_buffer;
    CDescriptor m_file;
};
