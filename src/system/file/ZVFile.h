#pragma once

#include "system/filename/ZVFilename.h"

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

// What other processes may do with the file meanwhile. Only the bit of Write means something.
enum class ZVFileShare : uint32_t
{
    None = 0,
    Write = 2,
};

enum class ZVFileCreation : uint32_t
{
    CreateAndTruncate = 0,
    CreateNew = 1,  // fails when the file exists
    OpenOrCreate = 2,
    OpenExisting = 3,
    Append = 4,  // an existing file; every write goes to its end
};

enum class ZVSeekOrigin : int32_t
{
    Start = 0,  // and every value that is not here
    Current = 1,
    End = 2,
};

// A file by its name and, while it is open, one POSIX descriptor. Nothing is buffered: callers read and write in blocks. Belongs
// to one thread; the destructor closes. Positions and lengths are in bytes. An operation that fails gives false or -1 and leaves
// the cause in errno; a failed open and a failed write are also logged.
class ZVFile : public ZVFilename
{
public:
    ZVFile() = default;
    ~ZVFile() { Close(); }
    ZVFile(const ZVFile&) = delete;
    ZVFile& operator=(const ZVFile&) = delete;

    // Opens a file, closing what was open. A new file gets the mode octal 644, reduced by the umask. A directory cannot be
    // opened.
    //
    // Who opens for writing without sharing it takes a write lock on the whole file and fails when another has it, without
    // waiting and before the file is truncated. File systems without locks let everyone in.
    bool Open(const ZVFilename& name, ZVFileAccess access, ZVFileShare share = ZVFileShare::None,
              ZVFileCreation creation = ZVFileCreation::OpenExisting);
    // The same with what was last given to Open.
    bool Reopen();
    // Always true, for a closed file too.
    bool Close();
    bool IsOpen() const { return m_isOpen; }

    int64_t GetPosition() const;
    // The new position.
    int64_t Seek(int64_t offset, ZVSeekOrigin origin);
    // Makes the file reach at least to the position, with space on the disk where the file system can give it; the file is then
    // not made shorter. Where it cannot, the file ends at the position.
    bool SetEndOfFile();
    // Of the open file, or of the name when it is closed.
    int64_t GetLength() const;

    // True when all bytes were written.
    bool Write(const void* buffer, int64_t length);
    // One call of the system. written receives the bytes that it took, 0 on an error.
    bool Write(const void* buffer, int64_t length, int64_t& written);
    // The characters as 32-bit values without a terminator, as UTF-8, and as one byte each with "?" for what has none. The narrow
    // form is true whatever became of the write. scratch is a buffer that many calls can share.
    bool WriteWide(const ZVString& text);
    bool WriteUTF8(const ZVString& text, ZVBuffer& scratch);
    bool WriteUTF8(const ZVString& text);
    bool WriteNarrow(const ZVString& text);

    // One call of the system. read receives the bytes that it gave, 0 at the end and on an error.
    bool Read(void* buffer, int64_t length, int64_t& read);
    // Read up to a newline, which is not in the text, or the end; of 32-bit values a NUL ends the line too. False when nothing
    // was left to read. One value a call of the system: for small files.
    bool ReadLineWide(ZVString& text);
    bool ReadLineUTF8(ZVString& text);
    // ReadLineWide that is also true when nothing could be read in front of the end of the file.
    bool ReadLine(ZVString& text);

    // Waits until the data is on the disk.
    bool Flush();
    bool SetFileTime(const timeval& accessed, const timeval& modified);
    // Controls of a device. This platform has none: the call is logged and gives 0.
    int32_t Control(uint32_t request, const void* input, int64_t inputLength, void* output, int64_t outputLength);

private:
    int32_t OpenDescriptor() const;
    bool IsWriter() const { return (static_cast<uint32_t>(m_access) & static_cast<uint32_t>(ZVFileAccess::Write)) != 0; }
    bool SharesWriting() const { return (static_cast<uint32_t>(m_share) & static_cast<uint32_t>(ZVFileShare::Write)) != 0; }
    bool LocksFile() const { return IsWriter() && !SharesWriting(); }

    ZVFileAccess m_access = ZVFileAccess::None;
    ZVFileShare m_share = ZVFileShare::None;
    ZVFileCreation m_creation = ZVFileCreation::OpenExisting;
    bool m_isOpen = false;
    int32_t m_descriptor = -1;
};
