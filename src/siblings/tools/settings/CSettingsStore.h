#pragma once

#include "contracts/IZVSettings.h"
#include "core/string/ZVString.h"
#include "siblings/tools/CFileIdentity.h"
#include "siblings/tools/CPause.h"
#include "siblings/tools/log/CLogMaskFile.h"
#include "siblings/tools/settings/CSettingsDatabase.h"
#include "system/library/ZVNativeBytes.h"
#include "system/thread/ZVCriticalSection.h"

class ILogManager;

// The settings store: the file "Settings.db" in the data folder, which any number of processes use at once. It is opened by the
// first setting that is asked for, and created by the first that is written. Sections and names are compared exactly.
//
// A call waits for other processes for five seconds in all. A file that cannot be changed, in a folder without write access or on
// a full disk, is still read. A damaged file is renamed, with everything that belongs to it, to "Settings.db.damaged", which
// replaces an older one, and a new file is begun. A failure leaves a line in the log, after which the store reads as empty and
// refuses changes for the next seconds.
//
// The setting "Category Mask" of the section "Logging" is also written to the mask file of the log if it is a number; a process
// reads it when it starts.
class CSettingsStore final : public IZVSettings
{
public:
    // With an empty data folder the store cannot be opened. sqliteFile is the library's name for dlopen.
    CSettingsStore(const ZVString& dataFolder, ILogManager& log, const char* sqliteFile = "libsqlite3.so.0");

    CSettingsStore(const CSettingsStore&) = delete;
    CSettingsStore& operator=(const CSettingsStore&) = delete;

    bool GetSetting(const wchar_t* section, const wchar_t* name, IZVDllString& value) override;
    bool SetSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) override;
    bool RemoveSetting(const wchar_t* section, const wchar_t* name) override;

    // Closes the file; the next setting opens it again.
    void Close();

private:
    template <class Work>
    bool Guarded(Work work);
    CSettingsResult Checked(CSettingsResult result) const;
    bool Exists() const;
    CSettingsResult ReadUnwritable(const wchar_t* section, const wchar_t* name, ZVString& value);
    template <class Operation>
    bool Change(const wchar_t* section, const wchar_t* name, Operation operation, const wchar_t* value);
    template <class Operation>
    CSettingsResult ChangeLogMask(Operation operation, const wchar_t* value);
    bool UpdateLogMaskFile(const wchar_t* value) const;
    template <class Operation>
    CSettingsResult Run(Operation operation);
    bool Open();
    bool OpenFile();
    bool SetAside(const CFileIdentity& damaged);

    ILogManager& m_log;
    const char* const m_sqliteFile;
    const ZVString m_path;
    const ZVNativeBytes m_systemPath;
    const CLogMaskFile m_logMaskFile;

    ZVCriticalSection m_mutex;  // guards what follows
    CSQLiteLibrary m_sqlite;
    CWaitLimit m_wait;  // of the present call
    CSettingsDatabase m_database {m_sqlite, m_wait};
    CFileIdentity m_file;         // the file that is open
    CPause m_pause;               // after a failure to open it
    CPause m_changePause;         // after a change for which other processes left no time
    bool m_isUnwritable = false;  // whether the last failure to open it may still let it be read
};
