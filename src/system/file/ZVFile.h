#pragma once

#include "system/filename/ZVFilename.h"
#include "system/library/ZVDescriptor.h"

#include <cstdint>
#include <sys/types.h>

class ZVBuffer;
struct timeval;

enum class ZVFileAccess : uint32_t
{
    None = 0,
    Read = 1,
    Write = 2,
    ReadWrite = 3,
};

// What other processes may do with the file while it is open. Only the bit of Write has a meaning.
enum class ZVFileShare : uint32_t
{
    None = 0,
    Write = 2,
};

enum class ZVFileCreation : uint32_t
{
    CreateAndTruncate = 0,
    CreateNew = 1,  // fails if the file exists
    OpenOrCreate = 2,
    OpenExisting = 3,
    Append = 4,  // an existing file; every write goes to its end
};

enum class ZVSeekOrigin : int32_t
{
    Start = 0,  // every value that is not listed here counts as this one
    Current = 1,
    End = 2,
};

// A file by its name and, while it is open, one POSIX descriptor. Nothing is buffered: callers read and write in blocks. An
// object belongs to one thread and closes its file at its end. Positions and lengths are in bytes. An operation that fails
// returns false or -1 and leaves the reason in errno; a failed open and a failed write are also logged.
class ZVFile : public ZVFilename
{
public:
    ZVFile() = default;
    ZVFile(const ZVFile&) = delete;
    ZVFile& operator=(const ZVFile&) = delete;

    // Opens a file, after closing the one that was open. A new file gets the mode octal 644, reduced by the umask. A folder
    // cannot be opened.
    //
    // An open for writing that does not share it takes a write lock on the whole file. If somebody else has one it fails, without
    // waiting and before the file is truncated. File systems without locks let everyone in.
    bool Open(const ZVFilename& name, ZVFileAccess access, ZVFileShare share = ZVFileShare::None,
              ZVFileCreation creation = ZVFileCreation::OpenExisting);
    // The same with the values that were last given to Open.
    bool Reopen();
    // Always true, also for a closed file.
    bool Close();
    bool IsOpen() const { return m_isOpen; }

    int64_t GetPosition() const;
    // Returns the new position.
    int64_t Seek(int64_t offset, ZVSeekOrigin origin);
    // Makes the file reach at least to the current position, with space on the disk for all of it, and never shorter. On a file
    // system that cannot give space in advance, the file ends at the position.
    bool SetEndOfFile();
    // The length of the open file, or of the file of that name if it is closed.
    int64_t GetLength() const;

    // True when all bytes were written.
    bool Write(const void* buffer, int64_t length);
    // One call of the system. written receives the count of bytes that it took, 0 on an error.
    bool Write(const void* buffer, int64_t length, int64_t& written);
    // Write the characters as 32-bit values without a terminator, as UTF-8, or as one byte each with "?" for those that have
    // none. WriteNarrow is true whatever became of the write. scratch is a buffer that many calls can share.
    bool WriteWide(const ZVString& text);
    bool WriteUTF8(const ZVString& text, ZVBuffer& scratch);
    bool WriteUTF8(const ZVString& text);
    bool WriteNarrow(const ZVString& text);

    // One call of the system. read receives the count of bytes that it gave, 0 at the end and on an error.
    bool Read(void* buffer, int64_t length, int64_t& read);
    // Read up to a newline, which does not go into the text, or to the end; a NUL ends a line of 32-bit values too. False if
    // there was nothing left to read. Each value is a call of the system, so these are for small files.
    bool ReadLineWide(ZVString& text);
    bool ReadLineUTF8(ZVString& text);
    // ReadLineWide that is also true if nothing could be read although the position is before the end of the file.
    bool ReadLine(ZVString& text);

    // Waits until the data is on the disk.
    bool Flush();
    bool SetFileTime(const timeval& accessed, const timeval& modified);
    // Controls of a device. This platform has none: the call is logged and returns 0.
    int32_t Control(uint32_t request);

private:
    ZVDescriptor OpenDescriptor() const;
    bool IsWriter() const { return (static_cast<uint32_t>(m_access) & static_cast<uint32_t>(ZVFileAccess::Write)) != 0; }
    bool SharesWriting() const { return (static_cast<uint32_t>(m_share) & static_cast<uint32_t>(ZVFileShare::Write)) != 0; }
    bool LocksFile() const { return IsWriter() && !SharesWriting(); }

    ZVFileAccess m_access = ZVFileAccess::None;
    ZVFileShare m_share = ZVFileShare::None;
    ZVFileCreation m_creation = ZVFileCreation::OpenExisting;
    bool m_isOpen = false;
    ZVDescriptor m_descriptor;
};
