#pragma once

#include "caller/process/CWorkFolder.h"

#include <string>

// A name under which the worker opens a file. Its arguments are a language of their own, in which some names of files mean something
// else; such a file gets a link with a plain name, which has the file's extension and goes with the object.
class CPlainName
{
public:
    // The path is made absolute. The folder must outlive this.
    CPlainName(const std::filesystem::path& path, const CWorkFolder& folder);
    CPlainName(const CPlainName&) = delete;
    CPlainName& operator=(const CPlainName&) = delete;
    ~CPlainName();

    const std::string& Get() const { return m_name; }
    // A text of the worker, in which the plain name stands for the file, with the file's own name.
    std::string TellReal(std::string text) const;

private:
    std::string m_name;
    std::string m_real;
    std::filesystem::path m_link;  // empty if the name was plain
};

// Whether the worker takes an absolute path as it stands.
bool IsPlainName(const std::string& path);
