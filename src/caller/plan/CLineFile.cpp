#include "caller/plan/CLineFile.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace
{
// A line holds a picture of some kilobytes and what the tags of a film say. In a damaged file the next end of a line may be far away.
constexpr size_t MaximumLine = 0x4000000;
}

CLineFile::CLineFile(const std::filesystem::path& path) : m_path(path), m_file(path, std::ios::binary)
{
    if (!m_file)
        throw std::runtime_error("the file " + path.string() + " cannot be read: " + strerror(errno));
}

bool CLineFile::GetNext(std::string& line)
{
    try
    {
        return ReadLine(line);
    }
    catch (const std::ios_base::failure& error)
    {
        throw std::runtime_error("the file " + m_path.string() + " cannot be read: " + error.code().message());
    }
}

bool CLineFile::ReadLine(std::string& line)
{
    using Traits = std::ifstream::traits_type;
    line.clear();
    bool isTooLong = false;
    std::streamoff length = 0;
    while (true)
    {
        const auto next = m_file.rdbuf()->sbumpc();
        if (Traits::eq_int_type(next, Traits::eof()))
            return false;
        ++length;
        const char letter = Traits::to_char_type(next);
        if (letter == '\n')
            break;
        isTooLong = isTooLong || line.size() >= MaximumLine;
        if (!isTooLong)
            line += letter;
    }
    if (isTooLong)
        line.clear();
    m_start = m_next;
    m_next += length;
    ++m_number;
    return true;
}

void CLineFile::GoTo(std::streamoff start)
{
    m_file.clear();
    m_file.seekg(start);
    m_next = start;
}
