#pragma once

#include "core/string/ZVString.h"
#include "system/library/ZVDescriptor.h"

// A path for content that is not whole yet, on the device of the file that it will become: in a hidden folder within the file's
// own folder, from where a rename brings it into place. What still stands there when the object goes is deleted, and the last one
// to leave removes the hidden folder.
//
// Everyone in the hidden folder holds a shared lock on it. Whoever comes and finds it without a lock deletes what is in it, since
// those who put it there were killed. So what stands there must never be the only copy of anything.
class ZVTransferPlace
{
public:
    // What the name of the hidden folder begins with. The rest tells users apart, since one cannot clean up after another.
    static constexpr wchar_t FolderStart[] = L".zvtransfer-";

    // The folder ends in "/".
    explicit ZVTransferPlace(const ZVString& folder);
    // Leaves errno as it was.
    ~ZVTransferPlace();

    ZVTransferPlace(const ZVTransferPlace&) = delete;
    ZVTransferPlace& operator=(const ZVTransferPlace&) = delete;

    // Whether there is such a place. If not, GetError tells the system's reason.
    bool IsReady() const { return m_error == 0; }
    int GetError() const { return m_error; }
    // A path that is used by nobody else and has no file yet.
    const ZVString& GetPath() const { return m_path; }

    // Whether an error means that a folder takes no new files from this user. Files in it may still be writable.
    static bool IsForbidden(int error);
    // Deletes a file, or a folder with all that is in it, without following links. False if something is left, with the reason in
    // errno.
    static bool Remove(const ZVString& path);

private:
    int Enter();
    bool IsStillThere() const;
    bool IsForeign() const;

    ZVString m_folder;  // without a "/" at its end
    ZVString m_path;
    ZVDescriptor m_lock;
    int m_error;
};
