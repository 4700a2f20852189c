#include "caller/report/CPageFile.h"

#include "caller/report/PageTemplate.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>

namespace
{
namespace fs = std::filesystem;

// So many bytes are written at once.
constexpr size_t WrittenAtOnce = 256 * 1024;

// The mark stands within so many bytes.
constexpr size_t HeadSize = 4096;

bool IsReport(const fs::path& path)
{
    std::array<char, HeadSize> head {};
    std::ifstream file(path, std::ios::binary);
    file.read(head.data(), head.size());
    return std::string_view(head.data(), static_cast<size_t>(file.gcount())).find(PageMark) != std::string_view::npos;
}
}

CPageFile::CPageFile(const fs::path& path) : m_path(path)
{
    if (path == "-")
    {
        m_file = CDescriptor(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
        if (!m_file.IsOpen())
            Refuse(strerror(errno));
        return;
    }
    std::error_code error;
    if (fs::exists(path, error))
    {
        // Behind a link the page is replaced and the link stays. A pipe is not asked: it may never answer.
        m_path = fs::canonical(path, error);
        if (!fs::is_regular_file(m_path, error) || !IsReport(m_path))
            Refuse("it is there already and no page of this program; choose another name");
    }
    OpenPart();
}

// One that a killed process has left may have any number.
void CPageFile::OpenPart()
{
    for (int number = 0; !m_file.IsOpen(); ++number)
    {
        m_part = m_path.parent_path() / (".zivora-" + std::to_string(getpid()) + "-" + std::to_string(number) + ".part");
        m_file = CDescriptor(open(m_part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (!m_file.IsOpen() && errno != EEXIST)
            Refuse(strerror(errno));
    }
}

CPageFile::~CPageFile()
{
    std::error_code ignored;
    if (!m_part.empty())
        fs::remove(m_part, ignored);
}

void CPageFile::Refuse(const char* reason) const
{
    const std::string name = m_path == "-" ? "standard output" : "the page " + m_path.string();
    throw std::runtime_error(name + " cannot be written: " + reason);
}

void CPageFile::Write(std::string_view text)
{
    m_waiting += text;
    if (m_waiting.size() >= WrittenAtOnce)
        Flush();
}

void CPageFile::Flush()
{
    std::string_view left = m_waiting;
    while (!left.empty())
    {
        const ssize_t count = write(m_file.Get(), left.data(), left.size());
        if (count >= 0)
            left.remove_prefix(static_cast<size_t>(count));
        else if (errno != EINTR)
            Refuse(strerror(errno));
    }
    m_waiting.clear();
}

void CPageFile::Finish()
{
    Flush();
    if (m_part.empty())
        return;
    // Some file systems tell only here that the disk is full.
    if (fsync(m_file.Get()) != 0)
        Refuse(strerror(errno));
    std::error_code error;
    fs::rename(m_part, m_path, error);
    if (error)
        Refuse(error.message().c_str());
    m_part.clear();
}
