#pragma once

#include "caller/files/CWholeFile.h"

#include <filesystem>
#include <optional>
#include <string_view>

// A page that is being written, to standard output or to a file that is written whole or not at all. A file of that name is replaced only
// when it is such a page itself.
//
// What goes wrong is thrown as std::runtime_error with a sentence for the user.
class CPageFile
{
public:
    // "-" is standard output.
    explicit CPageFile(const std::filesystem::path& path);

    void Write(std::string_view text);
    void Finish();

private:
    std::optional<CWholeFile> m_file;  // nothing for standard output
};
