#include "system/component/ZVComponentKeptFiles.h"

#include "core/string/ZVString.h"
#include "system/component/ZVComponentTable.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLog.h"

#include <system_error>

namespace fs = std::filesystem;

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"ZVComponentKeptFiles"};

constexpr int32_t Renderer = 13;
constexpr wchar_t RendererLookUpTables[] = L"3dlut";
constexpr wchar_t RendererOwnExtension[] = L".bin";
constexpr char RendererSettings[] = "settings.bin";
// The name under which the settings wait to be restored. Earlier releases used it in the component's own folder: when such a file
// is there, it holds the user's settings, and the file under the proper name may be the package's.
constexpr char RendererSavedSettings[] = "settings_temp.bin";

bool IsFile(const fs::path& path)
{
    std::error_code ignored;
    const fs::file_status status = fs::symlink_status(path, ignored);
    return fs::exists(status) && !fs::is_directory(status);
}

// Gives a file or a link a second name. Where the file system has no second names, it is copied.
bool Link(const fs::path& from, const fs::path& to)
{
    std::error_code error;
    fs::create_hard_link(from, to, error);
    if (error)
        fs::copy(from, to, fs::copy_options::copy_symlinks, error);
    if (error)
        Source.Log("Error keeping %s: %s", from.c_str(), error.message().c_str());
    return !error;
}

// Brings one entry of the old folder into the new one, unless the package has something in its place.
bool PreserveEntry(const fs::directory_entry& entry, const fs::path& to)
{
    std::error_code error;
    const fs::file_status present = fs::symlink_status(to, error);
    const bool isFolder = fs::is_directory(entry.symlink_status(error));
    if (fs::exists(present))
    {
        const bool fits = isFolder == fs::is_directory(present);
        if (!fits)
            Source.Log("The package has a file in the place of a folder, or the other way around: %s", to.c_str());
        return fits;
    }
    return isFolder ? fs::create_directory(to, entry.path(), error) : Link(entry.path(), to);
}
}

ZVComponentKeptFiles::ZVComponentKeptFiles(int32_t number, const Path& oldFolder, const Path& newFolder,
                                           const Path& waitingFolder)
    : m_rule(GetRule(number)), m_old(oldFolder), m_new(newFolder), m_waitingSettings(waitingFolder / RendererSavedSettings)
{
}

ZVComponentKeptFiles::Rule ZVComponentKeptFiles::GetRule(int32_t number)
{
    if (number == Renderer)
        return Rule::RendererFiles;
    return ZVComponentTable::KeepsOneVersion(number) ? Rule::Nothing : Rule::Everything;
}

bool ZVComponentKeptFiles::Preserve() const
{
    std::error_code ignored;
    if (m_rule == Rule::Nothing || !fs::is_directory(m_old, ignored))
        return true;
    return PreserveSettings() && PreserveFolder();
}

bool ZVComponentKeptFiles::PreserveSettings() const
{
    if (m_rule != Rule::RendererFiles)
        return true;
    for (const char* name : {RendererSavedSettings, RendererSettings})
        if (IsFile(m_old / name))
            return Link(m_old / name, m_waitingSettings);
    return true;
}

bool ZVComponentKeptFiles::PreserveFolder() const
{
    std::error_code error;
    fs::recursive_directory_iterator entry(m_old, error);
    for (const fs::recursive_directory_iterator end; !error && entry != end; entry.increment(error))
    {
        if (entry.depth() == 0 && !Stays(*entry))
            entry.disable_recursion_pending();
        else if (!PreserveEntry(*entry, m_new / entry->path().lexically_relative(m_old)))
            return false;
    }
    if (error)
        Source.Log("Error reading %s: %s", m_old.c_str(), error.message().c_str());
    return !error;
}

bool ZVComponentKeptFiles::Stays(const fs::directory_entry& entry) const
{
    if (m_rule == Rule::Everything)
        return true;
    const Path name = entry.path().filename();
    std::error_code ignored;
    const fs::file_status status = entry.symlink_status(ignored);
    if (ZVNativePath::ToText(name.c_str()).IsEqual(RendererLookUpTables, false))
        return fs::is_directory(status) || fs::is_symlink(status);
    return !fs::is_directory(status) && name != RendererSettings && name != RendererSavedSettings &&
           ZVNativePath::ToText(name.extension().c_str()).IsEqual(RendererOwnExtension, false);
}

bool ZVComponentKeptFiles::Restore() const
{
    if (!IsFile(m_waitingSettings))
        return true;
    std::error_code error;
    fs::rename(m_waitingSettings, m_new / RendererSettings, error);
    if (error)
        Source.Log("Error putting back %s: %s", RendererSettings, error.message().c_str());
    return !error;
}
