#include "system/filename/ZVPathLayout.h"

#include <algorithm>

namespace
{
constexpr wchar_t Separators[] = L"/\\";
constexpr wchar_t SchemeMark[] = L"://";
constexpr int32_t SchemeMarkLength = 3;
constexpr wchar_t DeviceFolder[] = L"/dev";
constexpr int32_t DeviceFolderLength = 4;
constexpr int32_t DriveLetterLength = 2;
constexpr int32_t NetworkMarkLength = 2;

int32_t FindOrEnd(const ZVString& text, const wchar_t* set, int32_t start)
{
    const int32_t position = text.FindOneOf(set, start);
    return position == -1 ? text.GetLength() : position;
}

// The end of the drive of a path without a drive letter.
int32_t GetLocalDriveEnd(const ZVString& path)
{
    if (ZVPathLayout::IsSeparator(path.GetAt(0)) && ZVPathLayout::IsSeparator(path.GetAt(1)))
        return FindOrEnd(path, Separators, NetworkMarkLength);
    if (path.StartsWith(DeviceFolder, false) && ZVPathLayout::IsSeparator(path.GetAt(DeviceFolderLength)))
    {
        const int32_t deviceStart = DeviceFolderLength + 1;
        const int32_t deviceEnd = FindOrEnd(path, Separators, deviceStart);
        return deviceEnd > deviceStart ? deviceEnd : 0;
    }
    return 0;
}
}

ZVString ZVPathLayout::WithClosingSlash(ZVString path)
{
    if (!IsSeparator(path.GetAt(path.GetLength() - 1)))
        path.AppendCharacter(L'/');
    return path;
}

ZVString ZVPathLayout::FolderOf(const ZVString& path)
{
    const int32_t nameStart = path.ReverseFind(L'/') + 1;
    return nameStart == 0 ? ZVString(L"./") : path.Left(nameStart);
}

ZVPathLayout ZVPathLayout::Of(const ZVString& path)
{
    ZVPathLayout layout;
    const int32_t schemeEnd = path.Find(SchemeMark);
    if (schemeEnd == -1)
    {
        layout.End = path.GetLength();
        layout.HasDriveLetter = path.GetAt(DriveLetterLength - 1) == L':';
        layout.DriveEnd = layout.HasDriveLetter ? DriveLetterLength : GetLocalDriveEnd(path);
    }
    else
    {
        const int32_t hostStart = schemeEnd + SchemeMarkLength;
        layout.End = FindOrEnd(path, L"?#", hostStart);
        layout.DriveEnd = std::min(FindOrEnd(path, Separators, hostStart), layout.End);
    }

    layout.NameStart = layout.End;
    while (layout.NameStart > layout.DriveEnd && !IsSeparator(path[layout.NameStart - 1]))
        --layout.NameStart;

    // A "." at the start of the name belongs to it, and so does the second one of "..".
    const int32_t leadingDots = path.GetAt(layout.NameStart) != L'.' ? 0 : path.GetAt(layout.NameStart + 1) != L'.' ? 1 : 2;
    layout.NameEnd = layout.End;
    layout.ExtensionStart = layout.End;
    for (int32_t position = layout.End - 1; position >= layout.NameStart + leadingDots; --position)
    {
        if (path[position] != L'.')
            continue;
        layout.NameEnd = position;
        layout.ExtensionStart = position + 1;
        break;
    }
    return layout;
}
