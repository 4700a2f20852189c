// The folders that the product and the user's desktop have names for.

#include "contracts/IZVApplicationInformation.h"
#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "system/file/ZVFileError.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVSmallFile.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/library/ZVDllString.h"
#include "system/library/ZVInstallFolder.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <pwd.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileSystem::GetDirectoryWorking"};

constexpr wchar_t DataFolder[] = L".zivora/Generic/";
constexpr wchar_t ProductFolder[] = L".zivora";
constexpr wchar_t TempFolder[] = L"Temp";
constexpr wchar_t SettingsSection[] = L"Properties";
constexpr wchar_t TempSetting[] = L"File Location - Temp Location";

constexpr wchar_t DesktopFoldersFile[] = L"user-dirs.dirs";
constexpr wchar_t ConfigurationFolder[] = L".config";
constexpr std::string_view HomeVariable = "$HOME";

// The user's folders by their names in the desktop's file, and where they are without it.
struct UserFolderName
{
    ZVFileSystem::UserFolder Folder;
    const char* Variable;
    const wchar_t* DefaultName;
};

constexpr UserFolderName UserFolderNames[] = {
    {ZVFileSystem::UserFolder::Documents, "XDG_DOCUMENTS_DIR", L"Documents"},
    {ZVFileSystem::UserFolder::Music,     "XDG_MUSIC_DIR",     L"Music"    },
    {ZVFileSystem::UserFolder::Pictures,  "XDG_PICTURES_DIR",  L"Images"   },
    {ZVFileSystem::UserFolder::Videos,    "XDG_VIDEOS_DIR",    L"Video"    },
};

ZVString GetEnvironment(const char* name)
{
    return ZVNativePath::ToText(getenv(name));
}

// The home folder of the user's account, for a process that was started without an environment.
ZVString GetAccountHome()
{
    const passwd* account = getpwuid(getuid());
    return account == nullptr ? ZVString() : ZVNativePath::ToText(account->pw_dir);
}

// What a value of the desktop's file means: it may be in quotation marks and have backslashes before special characters.
std::string Unquoted(std::string_view value)
{
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
        value = value.substr(1, value.size() - 2);
    std::string plain;
    for (size_t position = 0; position < value.size(); ++position)
    {
        if (value[position] == '\\' && position + 1 < value.size())
            ++position;
        plain.push_back(value[position]);
    }
    return plain;
}

// The value of the last line of the form NAME=value; empty if there is none.
std::string ReadDesktopVariable(const ZVString& path, std::string_view name)
{
    const std::string content = ZVSmallFile::Read(path);
    std::string_view rest = content;
    std::string value;
    while (!rest.empty())
    {
        std::string_view line = ZVSmallFile::TakeUpTo(rest, '\n');
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
        if (ZVSmallFile::TakeUpTo(line, '=') == name)
            value = Unquoted(line);
    }
    return value;
}

// A folder that the desktop has set, or empty. Only an absolute path or one below the home folder is accepted.
ZVString GetDesktopFolder(const char* variable)
{
    ZVString configuration = GetEnvironment("XDG_CONFIG_HOME");
    if (configuration.IsEmpty())
        configuration = ZVFileSystem::GetDirectoryHome() + ConfigurationFolder;
    std::string folder = ReadDesktopVariable(ZVPathLayout::WithClosingSlash(configuration) + DesktopFoldersFile, variable);
    if (folder.starts_with(HomeVariable) && (folder.size() == HomeVariable.size() || folder[HomeVariable.size()] == '/'))
        folder.replace(0, HomeVariable.size() + 1, ZVNativePath(ZVFileSystem::GetDirectoryHome()));
    return folder.starts_with('/') ? ZVPathLayout::WithClosingSlash(ZVNativePath::ToText(folder.c_str())) : ZVString();
}

// The user's setting for temporary files.
class TempFolderSetting
{
public:
    TempFolderSetting() : m_settings(g_pZVTools == nullptr ? nullptr : g_pZVTools->GetSettings(true)) {}

    ZVString Get() const
    {
        ZVString folder;
        ZVDllString value(folder);
        if (m_settings == nullptr || !m_settings->GetSetting(SettingsSection, TempSetting, value))
            return {};
        ZVFilename::MakeFileSystemPath(folder);
        return ZVFileSystem::IsDirectory(folder) ? folder : ZVString();
    }

    void Remove() const
    {
        if (m_settings != nullptr)
            m_settings->RemoveSetting(SettingsSection, TempSetting);
    }

private:
    IZVSettings* m_settings;
};

// The folder of the setting, made ready; empty, with the setting removed, if it is of no use.
ZVString GetTempFromSetting(bool addProductFolder)
{
    const TempFolderSetting setting;
    ZVFilename folder = ZVFilename::FromPath(setting.Get());
    if (folder.IsEmpty())
        return {};
    if (addProductFolder)
        folder.AddPathPart(ProductFolder);
    if (ZVFileSystem::MakeDirectoryTree(folder.GetPathOnly()))
        return folder.GetPathOnly();
    setting.Remove();
    return {};
}
}

ZVString ZVFileSystem::GetDirectoryHome()
{
    ZVString home = GetEnvironment("HOME");
    if (home.IsEmpty())
        home = GetAccountHome();
    return ZVPathLayout::WithClosingSlash(home);
}

ZVString ZVFileSystem::GetDirectoryAppData()
{
    IZVApplicationInformation* information = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetApplicationInformation();
    const ZVString folder = information == nullptr ? L"" : information->GetDataDirectory();
    return folder.IsEmpty() ? GetDirectoryHome() + DataFolder : ZVPathLayout::WithClosingSlash(folder);
}

ZVString ZVFileSystem::GetDirectoryInstall()
{
    return ZVInstallFolder::Fixed;
}

ZVString ZVFileSystem::GetDirectoryTemp(bool useSetting, bool addProductFolder)
{
    ZVString folder = useSetting ? GetTempFromSetting(addProductFolder) : ZVString();
    if (folder.IsEmpty())
    {
        folder = GetDirectoryAppData() + TempFolder;
        MakeDirectoryTree(folder);
    }
    return ZVPathLayout::WithClosingSlash(folder);
}

ZVString ZVFileSystem::GetDirectoryWorking()
{
    char path[PATH_MAX];
    if (getcwd(path, sizeof path) != nullptr)
        return ZVPathLayout::WithClosingSlash(ZVNativePath::ToText(path));
    ZVLogFileError(Source, "Error %d asking for the path of: %s", L".");
    return {};
}

ZVString ZVFileSystem::GetDirectoryUserFolder(UserFolder folder)
{
    for (const UserFolderName& name : UserFolderNames)
    {
        if (name.Folder != folder)
            continue;
        const ZVString desktopFolder = GetDesktopFolder(name.Variable);
        return desktopFolder.IsEmpty() ? ZVPathLayout::WithClosingSlash(GetDirectoryHome() + name.DefaultName) : desktopFolder;
    }
    return {};
}
