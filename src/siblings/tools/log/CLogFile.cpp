#include "siblings/tools/log/CLogFile.h"

#include "siblings/tools/CDataFolder.h"
#include "siblings/tools/CFileIdentity.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/uio.h>
#include <unistd.h>

namespace
{
constexpr mode_t FileMode = 0666;

// A second try meets a file that was just opened; it could only lose its name to a whole rotation in between.
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

CLogFile::~CLogFile()
{
    Replace(NoDescriptor);
}

void CLogFile::Append(const char* line, size_t size)
{
    const ZVCriticalSectionLock lock(m_mutex);
    if (m_look.IsOver() && !HasName())
        Replace(NoDescriptor);
    for (int32_t tries = 0; tries < MaximumTries; ++tries)
    {
        if (m_descriptor == NoDescriptor && !Open())
            return;
        if (!Write(line, size))
        {
            Replace(NoDescriptor);
            m_failure.Begin();
            return;
        }
        // Behind the line just written: asking for the size by fstat would cost as much as the write. Only a full file was ever
        // rotated.
        const off_t end = lseek(m_descriptor, 0, SEEK_CUR);
        if (end < m_rotationSize)
            return;
        if (HasName())
        {
            if (end >= m_rotateAt)
                Rotate();
            return;
        }
        // Rotated and dropped meanwhile, and the line with it: it is written again.
        Replace(NoDescriptor);
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
        written = m_isLineOpen ? writev(m_descriptor, parts, 2) : write(m_descriptor, line, size);
    while (written == -1 && errno == EINTR);
    if (written == -1)
        return false;
    m_isLineOpen = static_cast<size_t>(written) < expected;
    return true;
}

// False when the file that is open was removed, or renamed over.
bool CLogFile::HasName()
{
    m_look.Begin();
    struct stat state;
    return !m_canLoseName || fstat(m_descriptor, &state) != 0 || state.st_nlink > 0;
}

bool CLogFile::Open()
{
    if (m_path.IsEmpty() || !m_failure.IsOver())
        return false;
    int descriptor = OpenPath();
    if (descriptor == NoDescriptor && errno == ENOENT && CDataFolder::MakeFoldersOf(m_systemPath))
        descriptor = OpenPath();
    if (descriptor == NoDescriptor)
    {
        m_failure.Begin();
        return false;
    }
    Replace(descriptor);
    return true;
}

// Opens the path as the log, or gives NoDescriptor and errno. A pipe or a socket is refused: it could block its writer, or end
// it by a signal.
int CLogFile::OpenPath() const
{
    const int descriptor = open(m_systemPath, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, FileMode);
    if (descriptor == -1)
        return NoDescriptor;
    struct stat state;
    if (fstat(descriptor, &state) == 0 && (S_ISREG(state.st_mode) || S_ISCHR(state.st_mode)))
        return descriptor;
    close(descriptor);
    errno = EINVAL;
    return NoDescriptor;
}

// Goes on with another descriptor, which it takes over, or with none.
void CLogFile::Replace(int descriptor)
{
    if (m_descriptor != NoDescriptor)
        close(m_descriptor);
    m_descriptor = descriptor;
    m_canLoseName = false;
    if (descriptor == NoDescriptor)
        return;
    m_rotateAt = IsSymbolicLink(m_systemPath) ? INT64_MAX : m_rotationSize;
    m_look.Begin();
    // A file that has no name but is found by the path is one that the path links to as a descriptor, as "/dev/stdout" may; it
    // will stay so.
    struct stat state;
    m_canLoseName = fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode) &&
                    (state.st_nlink > 0 || !(CFileIdentity::OfPath(m_systemPath) == CFileIdentity::OfDescriptor(descriptor)));
}

// Moves a full file aside, unless another process already has. Nothing here waits: while another process rotates, lines go on
// into the file that it moves.
void CLogFile::Rotate()
{
    const int current = OpenPath();
    if (current == NoDescriptor)
    {
        m_rotateAt += m_rotationSize;
        return;
    }
    // The lock is on an opening of our own, as the descriptor may be shared with a parent process. The path tells whether there
    // is anything left to do: when another process was faster it names a new file by now.
    const CFileIdentity full = CFileIdentity::OfDescriptor(m_descriptor);
    const bool isLocked = flock(current, LOCK_EX | LOCK_NB) == 0;
    const bool isBusy = !isLocked && errno == EWOULDBLOCK;
    const bool isMoved =
        isLocked && (!(CFileIdentity::OfPath(m_systemPath) == full) || rename(m_systemPath, m_oldSystemPath) == 0);
    if (isMoved)
        Replace(NoDescriptor);
    else if (!isBusy)
        m_rotateAt += m_rotationSize;
    close(current);
}
