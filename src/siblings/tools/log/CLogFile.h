#pragma once

#include "core/string/ZVString.h"
#include "siblings/tools/CPause.h"
#include "system/library/ZVDescriptor.h"
#include "system/library/ZVNativeBytes.h"
#include "system/thread/ZVCriticalSection.h"

#include <cstddef>
#include <cstdint>
#include <sys/stat.h>

// The file that log lines are appended to, by any number of threads and processes at once. Each line is a single write, so lines
// never mix. The first line makes the file and the folders above it.
//
// A file that has reached the rotation size is renamed to its path with ".1" added, replacing the one before, and the next line
// begins a new file. A process that still has the renamed file open notices it with its next line, which is then in the old
// file. A line is never left in a file that a rotation has dropped. When somebody else removes the file, that is noticed within
// two seconds. A path that is a symbolic link is followed and not rotated.
//
// A line that cannot be written is dropped. After such a failure all lines of the next two seconds are dropped without looking at
// the disk: the log never holds up its caller.
class CLogFile
{
public:
    static constexpr int64_t DefaultRotationSize = 4 * 1024 * 1024;

    // An empty path is no file; every line is dropped. rotationSize is in bytes.
    explicit CLogFile(const ZVString& path, int64_t rotationSize = DefaultRotationSize);

    CLogFile(const CLogFile&) = delete;
    CLogFile& operator=(const CLogFile&) = delete;

    const ZVString& GetPath() const { return m_path; }

    // Appends the bytes of a line, including its line break.
    void Append(const char* line, size_t size);

private:
    bool Open();
    ZVDescriptor OpenPath() const;
    bool Write(const char* line, size_t size);
    bool HasName();
    void Rotate();
    void Use(ZVDescriptor file);
    void Close();

    const ZVString m_path;
    const ZVNativeBytes m_systemPath;
    const ZVNativeBytes m_oldSystemPath;
    const int64_t m_rotationSize;

    ZVCriticalSection m_mutex;  // guards what follows
    ZVDescriptor m_file;
    bool m_canLoseName = false;  // false for a device and the like
    bool m_isLineOpen = false;   // only a part of the last line could be written
    int64_t m_rotateAt;          // at least the rotation size; more where a rotation is not possible
    CPause m_failure;
    CPause m_look;  // since it was last checked whether the file has a name
};
