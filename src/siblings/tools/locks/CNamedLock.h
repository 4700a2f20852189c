#pragma once

#include "contracts/IZVNamedLocks.h"
#include "contracts/ZVReleasePointer.h"
#include "core/string/ZVString.h"

class ILogManager;

// A lock on a file that all processes of the user find by the lock's name. The system gives it back when the process ends,
// however that comes about. The file stays: to remove it would part those who wait from those who come.
class CNamedLock final : public ZVReleasable<IZVNamedLock>
{
public:
    // The folder is made with the first lock. Both outlive the object.
    CNamedLock(const ZVString& folder, const ZVString& name, ILogManager& log);
    ~CNamedLock() override { Unlock(); }
    CNamedLock(const CNamedLock&) = delete;
    CNamedLock& operator=(const CNamedLock&) = delete;

    bool Lock(int32_t milliseconds) override;
    void Unlock() override;

private:
    static constexpr int NoDescriptor = -1;

    bool OpenFile();
    void LogFailure(const char* what) const;

    ZVString m_path;
    ILogManager& m_log;
    int m_descriptor = NoDescriptor;
};
