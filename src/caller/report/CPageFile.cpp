#include "caller/report/CPageFile.h"

#include "caller/report/PageTemplate.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace
{
namespace fs = std::filesystem;

// The mark stands within so many bytes.
constexpr size_t HeadSize = 4096;

bool IsReport(const fs::path& path)
{
    std::array<char, HeadSize> head {};
    std::ifstream file(path, std::ios::binary);
    file.read(head.data(), head.size());
    return std::string_view(head.data(), static_cast<size_t>(file.gcount())).find(PageMark) != std::string_view::npos;
}

[[noreturn]] void Refuse(const fs::path& path, const std::string& reason)
{
    throw std::runtime_error("the page " + path.string() + " cannot be written: " + reason);
}

void ExpectOutput()
{
    if (!std::cout)
        throw std::runtime_error(std::string("standard output cannot be written: ") + strerror(errno));
}
}

CPageFile::CPageFile(const fs::path& path)
{
    if (path == "-")
        return;
    std::error_code error;
    if (fs::is_directory(path, error))
        Refuse(path, "it is a folder");
    if (fs::exists(path, error) && (!fs::is_regular_file(path, error) || !IsReport(path)))
        Refuse(path, "it is there already and no page of this program; choose another name");
    m_file.emplace(path);
}

void CPageFile::Write(std::string_view text)
{
    if (m_file)
        return m_file->Write(text);
    std::cout << text;
    ExpectOutput();
}

void CPageFile::Finish()
{
    if (m_file)
        return m_file->Finish();
    std::cout.flush();
    ExpectOutput();
}
