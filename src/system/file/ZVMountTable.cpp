#include "system/file/ZVMountTable.h"

#include "system/file/ZVSmallFile.h"
#include "system/filename/ZVNativePath.h"

#include <string>

namespace
{
constexpr wchar_t MountInfoFile[] = L"/proc/self/mountinfo";

// Fields of a line, counted from 0. Any number of optional ones follows, up to their end mark.
constexpr int FolderField = 4;
constexpr std::string_view OptionalFieldsEnd = "-";

bool IsOctalEscape(std::string_view text)
{
    if (text.size() < 4 || text[0] != '\\')
        return false;
    for (const char digit : text.substr(1, 3))
        if (digit < '0' || digit > '7')
            return false;
    return true;
}

// The text of a field, in which blanks, tabs, line feeds and backslashes are written as "\" and three octal digits.
ZVString DecodeField(std::string_view field)
{
    std::string bytes;
    while (!field.empty())
    {
        const bool isEscape = IsOctalEscape(field);
        const int value = isEscape ? (field[1] - '0') * 64 + (field[2] - '0') * 8 + (field[3] - '0') : field[0];
        bytes.push_back(static_cast<char>(value));
        field.remove_prefix(isEscape ? 4 : 1);
    }
    return ZVNativePath::ToText(bytes.c_str());
}

bool ParseLine(std::string_view line, ZVMount& mount)
{
    for (int field = 0; field < FolderField; ++field)
        ZVSmallFile::TakeUpTo(line, ' ');
    mount.Folder = DecodeField(ZVSmallFile::TakeUpTo(line, ' '));
    while (!line.empty() && ZVSmallFile::TakeUpTo(line, ' ') != OptionalFieldsEnd)
    {
    }
    mount.FileSystemType = DecodeField(ZVSmallFile::TakeUpTo(line, ' '));
    mount.Device = DecodeField(ZVSmallFile::TakeUpTo(line, ' '));
    return !mount.Folder.IsEmpty() && !mount.FileSystemType.IsEmpty();
}

bool IsWithin(const ZVString& path, const ZVString& folder)
{
    return folder == L"/" || path == folder || path.StartsWith(folder + L"/");
}
}

ZVMountTable ZVMountTable::Load()
{
    return Parse(ZVSmallFile::Read(MountInfoFile));
}

ZVMountTable ZVMountTable::Parse(std::string_view text)
{
    ZVMountTable table;
    while (!text.empty())
    {
        ZVMount mount;
        if (ParseLine(ZVSmallFile::TakeUpTo(text, '\n'), mount))
            table.m_mounts.Add(mount);
    }
    return table;
}

const ZVMount* ZVMountTable::FindForPath(const ZVString& path) const
{
    const ZVMount* found = nullptr;
    for (const ZVMount& mount : m_mounts)
        if (IsWithin(path, mount.Folder) && (found == nullptr || mount.Folder.GetLength() >= found->Folder.GetLength()))
            found = &mount;
    return found;
}
