#pragma once

#include "contracts/IZVNamedLocks.h"
#include "contracts/ZVReleasePointer.h"
#include "core/string/ZVString.h"
#include "system/library/ZVDescriptor.h"

class ILogManager;

// A lock on a file that all processes of the user find by the lock's name. The system gives it back when the process ends,
// whatever the reason. The file stays: if it were removed, those who wait for it and those who come later would lock different
// files.
class CNamedLock final : public ZVReleasable<IZVNamedLock>
{
public:
    // The folder is made when the first lock is taken. The log must outlive the object.
    CNamedLock(const ZVString& folder, const ZVString& name, ILogManager& log);
    CNamedLock(const CNamedLock&) = delete;
    CNamedLock& operator=(const CNamedLock&) = delete;

    bool Lock(int32_t milliseconds) override;
    void Unlock() override;

private:
    bool OpenFile();
    void LogFailure(const char* what) const;

    ZVString m_path;
    ILogManager& m_log;
    ZVDescriptor m_file;  // open while the lock is held or waited for
};
