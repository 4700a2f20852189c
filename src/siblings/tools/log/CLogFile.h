#pragma once

#include "core/string/ZVString.h"
#include "core/string/ZVStringUTF8.h"
#include "siblings/tools/CPause.h"
#include "system/thread/ZVCriticalSection.h"

#include <cstddef>
#include <cstdint>
#include <sys/stat.h>

// The file that log lines are appended to, by any number of threads and processes at once. A line is one write, so lines never
// mix. The file and the folders above it are made by the first line.
//
// A file that has reached the rotation size is renamed to its path with ".1" behind it, in the place of the one before, and the
// next line begins a new file. Processes that still have the renamed file open notice it with their next line, which is then in
// the old file. A line is never left in a file that a rotation has dropped. That somebody else removed the file is noticed
// within two seconds. A path that is a symbolic link is followed and not rotated.
//
// A line that cannot be written is dropped, and after such a failure all lines of the next seconds are, without a look at the
// disk: the log never holds up its caller.
class CLogFile
{
public:
    static constexpr int64_t DefaultRotationSize = 4 * 1024 * 1024;

    // An empty path is no file; every line is dropped. rotationSize is in bytes.
    explicit CLogFile(const ZVString& path, int64_t rotationSize = DefaultRotationSize);
    ~CLogFile();

    CLogFile(const CLogFile&) = delete;
    CLogFile& operator=(const CLogFile&) = delete;

    const ZVString& GetPath() const { return m_path; }

    // Appends the bytes of a line, its line break among them.
    void Append(const char* line, size_t size);

private:
    static constexpr int NoDescriptor = -1;

    bool Open();
    int OpenPath() const;
    bool Write(const char* line, size_t size);
    bool HasName();
    void Rotate();
    void Replace(int descriptor);

    const ZVString m_path;
    const ZVStringUTF8 m_systemPath;
    const ZVStringUTF8 m_oldSystemPath;
    const int64_t m_rotationSize;

    ZVCriticalSection m_mutex;  // guards what follows
    int m_descriptor = NoDescriptor;
    bool m_canLoseName = false;  // false for a device and the like
    bool m_isLineOpen = false;   // the last line could be written in part only
    int64_t m_rotateAt;          // at least the rotation size; more where a rotation is not possible
    CPause m_failure;
    CPause m_look;  // since the name of the file was looked at
};
