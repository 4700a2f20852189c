#pragma once

#include "caller/process/CDescriptor.h"

#include <filesystem>
#include <string>
#include <string_view>

// A page that is being written. It stands under its name only when it is whole: until then it is written beside it, in a hidden file that
// goes again if the page is not finished. A file of that name is replaced only when it is such a page itself.
//
// What goes wrong is thrown as std::runtime_error with a sentence for the user.
class CPageFile
{
public:
    // "-" is standard output.
    explicit CPageFile(const std::filesystem::path& path);
    CPageFile(const CPageFile&) = delete;
    CPageFile& operator=(const CPageFile&) = delete;
    ~CPageFile();

    void Write(std::string_view text);
    void Finish();

private:
    void Refuse(const char* reason) const;
    void OpenPart();
    void Flush();

    std::filesystem::path m_path;
    std::filesystem::path m_part;  // empty for standard output, and when it has got its name
    CDescriptor m_file;
    std::string m_waiting;
};
