#include "siblings/tools/settings/CSettingsStore.h"

#include "contracts/ILogManager.h"
#include "core/string/ZVStringUTF8.h"
#include "siblings/tools/CDataFolder.h"
#include "system/log/ZVLogCategory.h"

#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <fcntl.h>
#include <new>
#include <sys/file.h>
#include <unistd.h>

namespace
{
// How often a file may turn out damaged, or be replaced by another process, within one call.
constexpr int32_t MaximumTries = 3;

// What SQLite keeps beside a database.
constexpr const wchar_t* CompanionSuffixes[] = {L"-wal", L"-shm"};

bool IsLogMask(const wchar_t* section, const wchar_t* name)
{
    return wcscmp(section, L"Logging") == 0 && wcscmp(name, L"Category Mask") == 0;
}
}

CSettingsStore::CSettingsStore(const ZVString& dataFolder, ILogManager& log, const char* sqliteFile)
    : m_log(log),
      m_sqliteFile(sqliteFile),
      m_path(dataFolder.IsEmpty() ? dataFolder : dataFolder + L"Settings.db"),
      m_systemPath(m_path),
      m_logMaskFile(dataFolder)
{
}

template <class... Arguments>
void CSettingsStore::Log(const char* format, const Arguments&... arguments) const
{
    const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
    m_log.LogNarrow(ZVLogCategory::General, L"CSettingsStore", format, list.Records(), list.Count());
}

// Passes a result on, and logs a failure.
CSettingsResult CSettingsStore::Checked(CSettingsResult result) const
{
    if (result == CSettingsResult::Failed)
        Log("Settings in %s failed: %s", m_path, m_database.GetError());
    return result;
}

// Does the work of one call under the lock. Exceptions stay on this side of the library's boundary; a change that one cut short
// is undone.
template <class Work>
bool CSettingsStore::Guarded(Work work)
{
    const ZVCriticalSectionLock lock(m_mutex);
    try
    {
        return work();
    }
    catch (const std::bad_alloc&)
    {
        m_database.Close();
        return false;
    }
}

bool CSettingsStore::GetSetting(const wchar_t* section, const wchar_t* name, IZVDllString& value)
{
    value.Empty();
    return Guarded(
        [&]
        {
            ZVString text;
            const auto read = [&] { return Checked(m_database.Read(section, name, text)); };
            if (!Exists() || Run(read) != CSettingsResult::Done)
                return false;
            value.SetString(text, -1);
            return true;
        });
}

bool CSettingsStore::SetSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value)
{
    const auto write = [&] { return Checked(m_database.Write(section, name, value)); };
    return Guarded([&] { return Change(section, name, write, value); });
}

bool CSettingsStore::RemoveSetting(const wchar_t* section, const wchar_t* name)
{
    const auto remove = [&] { return Checked(m_database.Remove(section, name)); };
    return Guarded([&] { return !Exists() || Change(section, name, remove, L""); });
}

void CSettingsStore::Close()
{
    const ZVCriticalSectionLock lock(m_mutex);
    m_database.Close();
}

// Reading and removing make no file.
bool CSettingsStore::Exists() const
{
    return CFileIdentity::OfPath(m_systemPath).Exists();
}

// Changes a setting. value is what it will be, empty for one that goes.
template <class Operation>
bool CSettingsStore::Change(const wchar_t* section, const wchar_t* name, Operation operation, const wchar_t* value)
{
    if (!IsLogMask(section, name))
        return Run(operation) == CSettingsResult::Done;
    return Run([&] { return ChangeLogMask(operation, value); }) == CSettingsResult::Done;
}

// Changes the log mask in the database and in its file. The file is written within the transaction, so that of several
// processes the last one wins in both.
template <class Operation>
CSettingsResult CSettingsStore::ChangeLogMask(Operation operation, const wchar_t* value)
{
    CSettingsResult result = Checked(m_database.Begin());
    if (result != CSettingsResult::Done)
        return result;
    result = operation();
    if (result == CSettingsResult::Done && !UpdateLogMaskFile(value))
        result = CSettingsResult::Failed;
    const CSettingsResult end = Checked(m_database.End(result == CSettingsResult::Done));
    // A transaction that stayed open would keep all other processes from writing.
    if (end != CSettingsResult::Done)
        m_database.Close();
    return result == CSettingsResult::Done ? end : result;
}

bool CSettingsStore::UpdateLogMaskFile(const wchar_t* value) const
{
    uint32_t mask = 0;
    const bool isDone = CLogMaskFile::Parse(ZVStringUTF8(value), mask) ? m_logMaskFile.Write(mask) : m_logMaskFile.Remove();
    if (!isDone)
        Log("The file of the log mask could not be changed, error: %d", errno);
    return isDone;
}

// Runs an operation on the open database, and once more on a new one if the file turns out damaged.
template <class Operation>
CSettingsResult CSettingsStore::Run(Operation operation)
{
    for (int32_t tries = 0; tries < MaximumTries && Open(); ++tries)
    {
        const CSettingsResult result = operation();
        if (result != CSettingsResult::Damaged)
            return result;
        SetAside(m_file);
    }
    return CSettingsResult::Failed;
}

bool CSettingsStore::Open()
{
    // Another process may have found the file damaged and begun a new one.
    if (m_database.IsOpen() && CFileIdentity::OfPath(m_systemPath) == m_file)
        return true;
    m_database.Close();
    if (m_path.IsEmpty() || !m_pause.IsOver())
        return false;
    if (OpenFile())
        return true;
    m_pause.Begin();
    return false;
}

bool CSettingsStore::OpenFile()
{
    if (!m_sqlite.Load(m_sqliteFile))
    {
        Log("Settings cannot be read or written: %s is not installed", m_sqliteFile);
        return false;
    }
    if (!CDataFolder::MakeFoldersOf(m_systemPath))
    {
        Log("The folder of %s could not be made, error: %d", m_path, errno);
        return false;
    }
    for (int32_t tries = 0; tries < MaximumTries; ++tries)
    {
        const CFileIdentity before = CFileIdentity::OfPath(m_systemPath);
        const CSettingsResult result = Checked(m_database.Open(m_systemPath));
        if (result == CSettingsResult::Failed)
            return false;
        m_file = CFileIdentity::OfPath(m_systemPath);
        if (result == CSettingsResult::Damaged)
            SetAside(before.Exists() ? before : m_file);
        else if (!before.Exists() || before == m_file)
            return true;
    }
    return false;
}

// Renames a damaged file, unless another process already has.
void CSettingsStore::SetAside(const CFileIdentity& damaged)
{
    // Before the file is opened here: closing it would drop the locks of a connection of this process.
    m_database.Close();
    const int descriptor = open(m_systemPath, O_RDONLY | O_CLOEXEC);
    if (descriptor == -1)
        return;
    flock(descriptor, LOCK_EX);
    if (CFileIdentity::OfDescriptor(descriptor) == damaged && CFileIdentity::OfPath(m_systemPath) == damaged)
    {
        const ZVString newPath = m_path + L".damaged";
        // The file goes last: a new one must not find the journal of the old.
        for (const wchar_t* const suffix : CompanionSuffixes)
        {
            const ZVNativeBytes newCompanion(newPath + suffix);
            if (rename(ZVNativeBytes(m_path + suffix), newCompanion) != 0)
                unlink(newCompanion);
        }
        if (rename(m_systemPath, ZVNativeBytes(newPath)) == 0)
            Log("The settings in %s were damaged. They are now in %s, and new ones are begun", m_path, newPath);
        else
            Log("The settings in %s are damaged and could not be renamed, error: %d", m_path, errno);
    }
    close(descriptor);
}
