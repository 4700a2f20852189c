#include "system/filename/ZVFilename.h"

#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <sys/stat.h>

namespace
{
constexpr wchar_t SidecarEnd[] = L"_ZVSidecar.xml";
constexpr wchar_t HLSIndexEnd[] = L".zhli";
constexpr wchar_t Separators[] = L"/\\";
constexpr int32_t MaximumCopyNumberDigits = 4;

ZVString Between(const ZVString& text, int32_t start, int32_t end)
{
    return text.Mid(start, end - start);
}

bool IsCopyNumber(const ZVString& digits)
{
    if (digits.IsEmpty() || digits.GetLength() > MaximumCopyNumberDigits || digits[0] == L'0')
        return false;
    for (const wchar_t digit : digits.View())
        if (digit < L'0' || digit > L'9')
            return false;
    return true;
}

// Takes the number in parentheses off the end of a name; a blank before it stays. 0 if there is none.
int32_t TakeCopyNumber(ZVString& name)
{
    const int32_t open = name.ReverseFind(L'(');
    if (open == -1 || !name.EndsWith(L')'))
        return 0;
    const ZVString digits = Between(name, open + 1, name.GetLength() - 1);
    if (!IsCopyNumber(digits))
        return 0;
    name = name.Left(open);
    return digits.ToInt();
}

ZVString WithNextCopyNumber(ZVString name, bool forFolder)
{
    const int32_t number = TakeCopyNumber(name);
    if (number == 0)
        name.AppendCharacter(L' ');
    return ZVFormat(L"%s(%d)", name, forFolder && number >= 2 ? 1 : number + 1);
}
}

ZVFilename ZVFilename::FromPath(const ZVString& path)
{
    ZVFilename name;
    name.m_path = path;
    return name;
}

void ZVFilename::SetFilename(const ZVString& text, bool clearProperties)
{
    m_path = text;
    Parse(clearProperties);
}

ZVString ZVFilename::GetProperty(const wchar_t* key, const ZVString& defaultValue) const
{
    return m_properties.GetString(key, defaultValue);
}

int32_t ZVFilename::GetIntegerProperty(const wchar_t* key, int32_t defaultValue) const
{
    return m_properties.GetInt(key, defaultValue);
}

void ZVFilename::SplitPath(ZVString* drive, ZVString* directory, ZVString* name, ZVString* extension) const
{
    ZVString text = m_path;
    MakeFileSystemPath(text);
    const ZVPathLayout layout = ZVPathLayout::Of(text);
    if (drive != nullptr)
    {
        *drive = text.Left(layout.DriveEnd);
        if (layout.HasDriveLetter)
            drive->MakeUpper();
    }
    if (directory != nullptr)
        *directory = Between(text, layout.DriveEnd, layout.NameStart);
    if (name != nullptr)
        *name = Between(text, layout.NameStart, layout.NameEnd);
    if (extension != nullptr)
        *extension = Between(text, layout.ExtensionStart, layout.End);
}

ZVString ZVFilename::GetDrive() const
{
    ZVString drive;
    SplitPath(&drive, nullptr, nullptr, nullptr);
    return drive;
}

ZVString ZVFilename::GetDirectory() const
{
    ZVString drive;
    ZVString directory;
    SplitPath(&drive, &directory, nullptr, nullptr);
    return drive + directory;
}

ZVString ZVFilename::GetNameOnly() const
{
    ZVString name;
    SplitPath(nullptr, nullptr, &name, nullptr);
    return name;
}

ZVString ZVFilename::GetExtension(bool lookAtFileType) const
{
    ZVString extension = lookAtFileType ? GetProperty(FileTypeProperty) : ZVString();
    if (extension.IsEmpty())
        SplitPath(nullptr, nullptr, nullptr, &extension);
    return extension;
}

ZVString ZVFilename::GetNameAndExtension(bool withPostExtensionData) const
{
    ZVString name;
    ZVString extension;
    SplitPath(nullptr, nullptr, &name, &extension);
    if (!extension.IsEmpty())
        name.AppendPieces(L".", extension);
    const ZVString data = withPostExtensionData ? GetPostExtensionData() : ZVString();
    if (!data.IsEmpty())
        name.AppendPieces(L";", data);
    return name;
}

ZVString ZVFilename::GetParentFolderName(bool keepSlash) const
{
    ZVString directory;
    SplitPath(nullptr, &directory, nullptr, nullptr);
    const int32_t last = directory.GetLength() - 1;
    if (last < 1)
        return {};
    const int32_t start = directory.ReverseFind(L'/', last - 1) + 1;
    return Between(directory, start, keepSlash ? last + 1 : last);
}

ZVString ZVFilename::GetSidecarName() const
{
    ZVString sidecar = GetDirectory();
    sidecar.AppendPieces(GetNameOnly(), L"_", GetExtension(true), SidecarEnd);
    return sidecar;
}

ZVString ZVFilename::GetHLSIndexName(bool checkExists) const
{
    const ZVString index = m_path + HLSIndexEnd;
    struct stat status;
    if (checkExists && stat(ZVNativePath(index), &status) != 0)
        return {};
    return index;
}

void ZVFilename::AddPathPart(const ZVString& text)
{
    if (m_path.IsEmpty())
    {
        m_path = text;
        return;
    }
    ZVString part = text;
    part.TrimLeft(Separators);
    m_path.TrimRight(Separators);
    m_path.AppendPieces(L"/", part);
}

void ZVFilename::AddCopyNumber(bool forFolder)
{
    ZVString path = m_path;
    if (forFolder)
        path.TrimRight(Separators);
    const ZVString closing = Between(m_path, path.GetLength(), m_path.GetLength());
    const ZVPathLayout layout = ZVPathLayout::Of(path);
    const int32_t nameEnd = forFolder ? layout.End : layout.NameEnd;
    const ZVString name = WithNextCopyNumber(Between(path, layout.NameStart, nameEnd), forFolder);
    m_path = path.Left(layout.NameStart) + name + path.Mid(nameEnd) + closing;
}
