#include "siblings/tools/settings/CSettingsStore.h"

#include "core/string/ZVStringUTF8.h"
#include "siblings/tools/CDataFolder.h"
#include "system/library/ZVDescriptor.h"
#include "system/log/ZVLog.h"
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
constexpr ZVLogSource Source {ZVLogCategory::General, L"CSettingsStore"};

// How often the file may turn out to be damaged, or be replaced by another process, within one call.
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

// Passes a result on, and logs a failure.
CSettingsResult CSettingsStore::Checked(CSettingsResult result) const
{
    if (result == CSettingsResult::Failed || result == CSettingsResult::Busy)
        Source.LogTo(m_log, "Settings in %s failed: %s", m_path, m_database.GetError());
    return result;
}

// Does the work of one call under the lock. Exceptions stay on this side of the library's boundary, and a change that one has cut
// short is undone.
template <class Work>
bool CSettingsStore::Guarded(Work work)
{
    // Waiting for another thread's call takes from the same five seconds.
    const CWaitLimit wait;
    const ZVCriticalSectionLock lock(m_mutex);
    m_wait = wait;
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
            if (!Exists())
                return false;
            CSettingsResult result = Run(read);
            if (result == CSettingsResult::Failed && m_isUnwritable)
                result = ReadUnwritable(section, name, text);
            if (result != CSettingsResult::Done)
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

// Reading and removing must not create the file.
bool CSettingsStore::Exists() const
{
    return CFileIdentity::OfPath(m_systemPath).Exists();
}

// Reads a setting although the file could not be opened for changes.
CSettingsResult CSettingsStore::ReadUnwritable(const wchar_t* section, const wchar_t* name, ZVString& value)
{
    const CSettingsResult result = m_database.ReadUnwritable(m_systemPath, section, name, value);
    // What cannot be read either is not tried again before the next attempt to open it.
    m_isUnwritable = result == CSettingsResult::Done || result == CSettingsResult::NotFound;
    return Checked(result);
}

// Changes a setting. value is its new value, empty for a setting that is removed.
template <class Operation>
bool CSettingsStore::Change(const wchar_t* section, const wchar_t* name, Operation operation, const wchar_t* value)
{
    if (!m_changePause.IsOver())
        return false;
    const auto changeLogMask = [&] { return ChangeLogMask(operation, value); };
    const CSettingsResult result = IsLogMask(section, name) ? Run(changeLogMask) : Run(operation);
    if (result == CSettingsResult::Busy)
        m_changePause.Begin();
    return result == CSettingsResult::Done;
}

// Changes the log mask in the database and in its file. The file is written within the transaction, so that the last of several
// processes wins in both.
template <class Operation>
CSettingsResult CSettingsStore::ChangeLogMask(Operation operation, const wchar_t* value)
{
    CSettingsResult result = Checked(m_database.Begin());
    if (result != CSettingsResult::Done)
        return result;
    result = operation();
    if (result == CSettingsResult::Done && !UpdateLogMaskFile(value))
        result = CSettingsResult::Failed;
    const CSettingsResult end = Checked(result == CSettingsResult::Done ? m_database.Commit() : m_database.RollBack());
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
        Source.LogTo(m_log, "The file of the log mask could not be changed, error: %d", errno);
    return isDone;
}

// Runs an operation on the open database, and again on a new one if the file turns out to be damaged.
template <class Operation>
CSettingsResult CSettingsStore::Run(Operation operation)
{
    for (int32_t tries = 0; tries < MaximumTries && Open(); ++tries)
    {
        const CSettingsResult result = operation();
        if (result != CSettingsResult::Damaged)
            return result;
        if (!SetAside(m_file))
            break;
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
        Source.LogTo(m_log, "Settings cannot be read or written: %s is not installed", m_sqliteFile);
        return false;
    }
    if (!CDataFolder::MakeFoldersOf(m_systemPath))
    {
        Source.LogTo(m_log, "The folder of %s could not be made, error: %d", m_path, errno);
        return false;
    }
    for (int32_t tries = 0; tries < MaximumTries; ++tries)
    {
        const CFileIdentity before = CFileIdentity::OfPath(m_systemPath);
        const CSettingsResult result = Checked(m_database.Open(m_systemPath));
        m_isUnwritable = result == CSettingsResult::Failed;
        if (result == CSettingsResult::Failed || result == CSettingsResult::Busy)
            return false;
        m_file = CFileIdentity::OfPath(m_systemPath);
        if (result == CSettingsResult::Done && (!before.Exists() || before == m_file))
            return true;
        if (result == CSettingsResult::Damaged && !SetAside(before.Exists() ? before : m_file))
            return false;
    }
    return false;
}

// Renames a damaged file, unless another process has already done so. False if it is still there.
bool CSettingsStore::SetAside(const CFileIdentity& damaged)
{
    // Before the file is opened here, since closing that would drop the locks of this process's connection.
    m_database.Close();
    const ZVDescriptor file(open(m_systemPath, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.IsOpen())
        return errno == ENOENT;
    while (flock(file.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        if (!m_wait.WaitABit())
            return false;
    if (CFileIdentity::OfDescriptor(file.Get()) != damaged || CFileIdentity::OfPath(m_systemPath) != damaged)
        return true;
    const ZVString newPath = m_path + L".damaged";
    // The file itself goes last: a new one must not find the journal of the old one.
    for (const wchar_t* const suffix : CompanionSuffixes)
    {
        const ZVNativeBytes newCompanion(newPath + suffix);
        if (rename(ZVNativeBytes(m_path + suffix), newCompanion) != 0)
            unlink(newCompanion);
    }
    if (rename(m_systemPath, ZVNativeBytes(newPath)) != 0)
    {
        Source.LogTo(m_log, "The settings in %s are damaged and could not be renamed, error: %d", m_path, errno);
        return false;
    }
    Source.LogTo(m_log, "The settings in %s were damaged. They are now in %s, and new ones are begun", m_path, newPath);
    return true;
}
