#include "siblings/tools/log/CLogFile.h"

#include "siblings/tools/CDataFolder.h"
#include "siblings/tools/CFileIdentity.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace
{
constexpr mode_t FileMode = 0666;

// The second try writes to a file that was opened just now. To be dropped again, that file would have to go through two whole
// rotations in between.
constexpr int32_t MaximumTries = 3;

bool IsSymbolicLink(const char* path)
{
    struct stat state;
    return lstat(path, &state) == 0 && S_ISLNK(state.st_mode);
}
}

CLogFile::CLogFile(const ZVString& path, int64_t rotationSize)
    : m_path(path), m_systemPath(path), m_oldSystemPath(path + L".1"), m_rotationSize(rotationSize), m_rotateAt(rotationSize)
{
}

void CLogFile::Append(const char* line, size_t size)
{
    const ZVCriticalSectionLock lock(m_mutex);
    if (m_look.IsOver() && !HasName())
        Close();
    for (int32_t tries = 0; tries < MaximumTries; ++tries)
    {
        if (!m_file.IsOpen() && !Open())
            return;
        if (!Write(line, size))
        {
            Close();
            m_failure.Begin();
            return;
        }
        // The position after the line just written is the size, and asking for it by fstat would cost as much as the write. Only
        // a full file can have been rotated.
        const off_t end = lseek(m_file.Get(), 0, SEEK_CUR);
        if (end < m_rotationSize)
            return;
        if (HasName())
        {
            if (end >= m_rotateAt)
                Rotate();
            return;
        }
        // The file was rotated and then dropped, and the line with it, so the line is written again.
        Close();
    }
}

bool CLogFile::Write(const char* line, size_t size)
{
    char lineBreak = '\n';
    const iovec parts[] = {
        {&lineBreak,              1   },
        {const_cast<char*>(line), size},
    };
    const size_t expected = m_isLineOpen ? size + 1 : size;
    ssize_t written;
    do
        written = m_isLineOpen ? writev(m_file.Get(), parts, 2) : write(m_file.Get(), line, size);
    while (written == -1 && errno == EINTR);
    if (written == -1)
        return false;
    m_isLineOpen = static_cast<size_t>(written) < expected;
    return true;
}

// False when the open file was removed, or another one was renamed over it.
bool CLogFile::HasName()
{
    m_look.Begin();
    struct stat state;
    return !m_canLoseName || fstat(m_file.Get(), &state) != 0 || state.st_nlink > 0;
}

bool CLogFile::Open()
{
    if (m_path.IsEmpty() || !m_failure.IsOver())
        return false;
    ZVDescriptor file = OpenPath();
    if (!file.IsOpen() && errno == ENOENT && CDataFolder::MakeFoldersOf(m_systemPath))
        file = OpenPath();
    if (!file.IsOpen())
    {
        m_failure.Begin();
        return false;
    }
    Use(std::move(file));
    return true;
}

// Opens the path as the log; a failure leaves errno. A pipe or a socket is refused: it could block the process that writes to it,
// or end that process by a signal.
ZVDescriptor CLogFile::OpenPath() const
{
    ZVDescriptor file(open(m_systemPath, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, FileMode));
    if (!file.IsOpen())
        return file;
    struct stat state;
    if (fstat(file.Get(), &state) == 0 && (S_ISREG(state.st_mode) || S_ISCHR(state.st_mode)))
        return file;
    file.Close();
    errno = EINVAL;
    return file;
}

void CLogFile::Use(ZVDescriptor file)
{
    m_file = std::move(file);
    m_rotateAt = IsSymbolicLink(m_systemPath) ? INT64_MAX : m_rotationSize;
    m_look.Begin();
    // A path such as "/dev/stdout" may lead to a descriptor whose file has no name. The path finds it all the same, and it stays
    // without a name.
    struct stat state;
    m_canLoseName = fstat(m_file.Get(), &state) == 0 && S_ISREG(state.st_mode) &&
                    (state.st_nlink > 0 || !(CFileIdentity::OfPath(m_systemPath) == CFileIdentity::OfDescriptor(m_file.Get())));
}

void CLogFile::Close()
{
    m_file.Close();
    m_canLoseName = false;
}

// Moves a full file aside, unless another process already has. Nothing here waits: while another process rotates, lines still go
// into the file that it moves.
void CLogFile::Rotate()
{
    const ZVDescriptor current = OpenPath();
    if (!current.IsOpen())
    {
        m_rotateAt += m_rotationSize;
        return;
    }
    // The lock is taken on a descriptor opened here, because the other one may be shared with a parent process. The path tells
    // whether there is anything left to do: when another process was faster, it names a new file by now.
    const CFileIdentity full = CFileIdentity::OfDescriptor(m_file.Get());
    const bool isLocked = flock(current.Get(), LOCK_EX | LOCK_NB) == 0;
    const bool isBusy = !isLocked && errno == EWOULDBLOCK;
    const bool isMoved =
        isLocked && (!(CFileIdentity::OfPath(m_systemPath) == full) || rename(m_systemPath, m_oldSystemPath) == 0);
    if (isMoved)
        Close();
    else if (!isBusy)
        m_rotateAt += m_rotationSize;
}
