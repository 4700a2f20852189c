#include "system/file/ZVVolumeLabels.h"

#include "core/string/ZVDigits.h"
#include "system/file/ZVFileError.h"
#include "system/filename/ZVNativePath.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <string>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileSystem::GetVolumeInformation"};
constexpr size_t EscapeLength = 4;

struct CloseFolder
{
    void operator()(DIR* folder) const { closedir(folder); }
};

// The byte of the escape at the start of a text, or 0.
int GetEscapedByte(const char* text)
{
    if (strncmp(text, "\\x", 2) != 0 || text[2] == '\0')
        return 0;
    const int high = ZVDigits::HexadecimalValue(text[2]);
    const int low = ZVDigits::HexadecimalValue(text[3]);
    return high == ZVDigits::NotADigit || low == ZVDigits::NotADigit ? 0 : high * 16 + low;
}
}

ZVString ZVVolumeLabels::Find(const ZVString& device, const ZVString& labelFolder)
{
    const ZVNativePath devicePath(device);
    const ZVNativePath folderPath(labelFolder);
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(folderPath));
    while (const dirent* entry = folder == nullptr ? nullptr : readdir(folder.get()))
    {
        if (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0)
            continue;
        char target[PATH_MAX];
        const std::string link = folderPath.GetBytes() + entry->d_name;
        if (realpath(link.c_str(), target) == nullptr)
            ZVLogFileError(Source, "realpath Error %d: %s", ZVNativePath::ToText(link.c_str()));
        else if (devicePath.GetBytes() == target)
            return Decode(entry->d_name);
    }
    return {};
}

ZVString ZVVolumeLabels::Decode(const char* linkName)
{
    std::string bytes;
    while (*linkName != '\0')
    {
        const int escaped = GetEscapedByte(linkName);
        bytes.push_back(escaped != 0 ? static_cast<char>(escaped) : *linkName);
        linkName += escaped != 0 ? EscapeLength : 1;
    }
    return ZVString::FromUTF8(bytes.c_str());
}
