#pragma once

#include "core/containers/ZVStringArray.h"
#include "system/filename/ZVFilename.h"
#include "system/shield/ZVShield.h"
#include "worker/ZVWorkerCommand.h"

// Locks the process in with what one task needs, before the task looks at anything that a stranger made. Missing folders of the
// result are made first, since the lock opens the folder of the result and no other; if nothing is in them when the object goes, they
// go too.
class ZVTaskShield
{
public:
    ZVTaskShield(const ZVWorkerCommand& command, const ZVWorkerRequest& request);
    ~ZVTaskShield();
    ZVTaskShield(const ZVTaskShield&) = delete;
    ZVTaskShield& operator=(const ZVTaskShield&) = delete;

    // Locks the process, if ZV_SHIELD does not say otherwise. False, with the reason in the log, when the task must not run.
    bool Lock();

private:
    void AllowProduct();
    void AllowLog();
    void AllowInput();
    void AllowFilm(const ZVFilename& film);
    void AllowDisc(const ZVString& path);
    void AllowFolderOf(const ZVString& path);
    void AllowInternet();
    void AllowResults();
    void AllowResult(const ZVString& path);
    // Returns the folder.
    ZVString AllowTemporaryFiles();
    void AllowTransfers(const ZVString& temporary);
    void AllowDisplay();
    void Allow(const ZVString& path, ZVShieldAccess access) { m_rules.Paths.push_back({path, access}); }
    void MakeFolders(const ZVString& folder);

    const ZVWorkerCommand& m_command;
    const ZVWorkerRequest& m_request;
    ZVShieldRules m_rules;
    ZVStringArray m_madeFolders;  // in the order in which they were made
};
