#pragma once

#include "core/string/ZVString.h"
#include "system/library/ZVDescriptor.h"

#include <cstdint>

// A new file in the folder for temporary files, for content that will become another file. Nobody else uses it, and it goes with
// the object. Only its user may read it.
//
// The file is locked while the object lives. A file of the same kind that nobody has locked was left by a process that was killed,
// and the next object of that kind deletes it. On a file system without locks such files stay.
//
// An operation that fails returns false, with the reason in errno.
class ZVLockedTemporaryFile
{
public:
    // The name is that of ZVFileSystem::GetUniqueFilename for the base and the extension.
    ZVLockedTemporaryFile(const ZVString& base, const ZVString& extension);
    ZVLockedTemporaryFile(const ZVLockedTemporaryFile&) = delete;
    ZVLockedTemporaryFile& operator=(const ZVLockedTemporaryFile&) = delete;
    ~ZVLockedTemporaryFile();

    // Whether there is such a file. If not, GetError tells the system's reason.
    bool IsReady() const { return m_error == 0; }
    int GetError() const { return m_error; }
    const ZVString& GetPath() const { return m_path; }

    bool Write(const void* bytes, int64_t count);
    // Ends the writing; all of it is on the disk then.
    bool Finish();
    // The file is somebody else's to delete from now on. It stays locked.
    void HandOver() { m_isHandedOver = true; }

private:
    void ClearRemains(const ZVString& base, const ZVString& extension) const;
    int Make(const ZVString& base, const ZVString& extension);
    bool IsOwn() const;

    ZVString m_path;
    ZVDescriptor m_lock;
    ZVDescriptor m_file;
    int64_t m_sent = 0;
    int64_t m_written = 0;
    int m_error;
    bool m_isHandedOver = false;
};
