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
// first setting that is asked for, and made by the first that is written. Sections and names are compared exactly.
//
// A damaged file is renamed, with what belongs to it, to "Settings.db.damaged", in the place of the one before, and a new one
// is begun. Failures leave a line in the log, after which the store reads as empty and refuses writes for the next seconds.
//
// The setting "Category Mask" of the section "Logging" is also written to the mask file of the log, as far as it is a number; a
// process takes it up when it starts.
class CSettingsStore final : public IZVSettings
{
public:
    // An empty data folder is a store that cannot be opened. sqliteFile is the library as dlopen finds it.
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
    template <class... Arguments>
    void Log(const char* format, const Arguments&... arguments) const;
    CSettingsResult Checked(CSettingsResult result) const;
    bool Exists() const;
    template <class Operation>
    bool Change(const wchar_t* section, const wchar_t* name, Operation operation, const wchar_t* value);
    template <class Operation>
    CSettingsResult ChangeLogMask(Operation operation, const wchar_t* value);
    bool UpdateLogMaskFile(const wchar_t* value) const;
    template <class Operation>
    CSettingsResult Run(Operation operation);
    bool Open();
    bool OpenFile();
    void SetAside(const CFileIdentity& damaged);

    ILogManager& m_log;
    const char* const m_sqliteFile;
    const ZVString m_path;
    const ZVNativeBytes m_systemPath;
    const CLogMaskFile m_logMaskFile;

    ZVCriticalSection m_mutex;  // guards what follows
    CSQLiteLibrary m_sqlite;
    CSettingsDatabase m_database {m_sqlite};
    CFileIdentity m_file;  // the file that is open
    CPause m_pause;        // after a failure to open it
};
