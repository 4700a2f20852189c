#pragma once

#include "contracts/IZVNamedLocks.h"
#include "core/string/ZVString.h"

class ILogManager;

class CNamedLocks final : public IZVNamedLocks
{
public:
    // The locks are files in the folder "Locks" of the data folder, whose path ends in "/"; without a data folder no lock can be
    // taken. The log must outlive the object.
    CNamedLocks(const ZVString& dataFolder, ILogManager& log);

    IZVNamedLock* CreateLock(const wchar_t* name) override;

private:
    ZVString m_folder;
    ILogManager& m_log;
};
