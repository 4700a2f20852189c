// The ways in which a path is written, and names that stand for other names.

#include "core/string/ZVDigits.h"
#include "system/filename/ZVFilename.h"
#include "system/library/ZVInstallFolder.h"

#include <string>

namespace
{
constexpr wchar_t FileScheme[] = L"file://";
constexpr wchar_t LocalHost[] = L"localhost/";
constexpr wchar_t InstallDriveMark[] = L"(Install Drive):";

// The product's private scheme names. They mean the same transport.
struct SchemeAlias
{
    const wchar_t* Alias;
    const wchar_t* Scheme;
};

constexpr SchemeAlias SchemeAliases[] = {
    {L"m01p://",  L"http://" },
    {L"m01ps://", L"https://"},
};

bool CutStart(ZVString& text, const wchar_t* start)
{
    if (!text.StartsWith(start, false))
        return false;
    text = text.Mid(static_cast<int32_t>(wcslen(start)));
    return true;
}

// The byte of the percent-escape at a position, or 0 if there is no escape. An escaped NUL counts as none: no path can hold it.
int GetEscapedByte(const ZVString& text, int32_t position)
{
    if (text.GetAt(position) != L'%')
        return 0;
    const int high = ZVDigits::HexadecimalValue(text.GetAt(position + 1));
    const int low = ZVDigits::HexadecimalValue(text.GetAt(position + 2));
    return high == ZVDigits::NotADigit || low == ZVDigits::NotADigit ? 0 : high * 16 + low;
}

void DecodePercentEscapes(ZVString& text)
{
    constexpr int32_t EscapeLength = 3;
    ZVString decoded;
    int32_t position = 0;
    while (position < text.GetLength())
    {
        // A character's bytes may be spread over several escapes, so a run of them is decoded as a whole.
        std::string bytes;
        for (int byte = GetEscapedByte(text, position); byte != 0; byte = GetEscapedByte(text, position))
        {
            bytes.push_back(static_cast<char>(byte));
            position += EscapeLength;
        }
        if (bytes.empty())
            decoded.AppendCharacter(text[position++]);
        else
            decoded.Append(ZVString::FromUTF8(bytes.c_str()));
    }
    text = decoded;
}
}

bool ZVFilename::ClearFileScheme(ZVString& path)
{
    if (!CutStart(path, FileScheme))
        return false;
    CutStart(path, LocalHost);
    return true;
}

bool ZVFilename::MapInstallDrive(ZVString& path)
{
    if (!CutStart(path, InstallDriveMark))
        return false;
    const ZVString drive = FromPath(ZVInstallFolder::Fixed).GetDrive();
    path.Replace(InstallDriveMark, drive, false);
    path.Prepend(drive);
    return true;
}

bool ZVFilename::MapProtocolAliases()
{
    for (const SchemeAlias& alias : SchemeAliases)
        if (CutStart(m_path, alias.Alias))
        {
            m_path.Prepend(alias.Scheme);
            return true;
        }
    return false;
}

void ZVFilename::ConvertPathStyle(ZVString& path, ZVPathStyle from, ZVPathStyle to)
{
    if (from == ZVPathStyle::Unknown)
        from = path.Find(L'/') != -1 ? ZVPathStyle::ForwardSlashes : ZVPathStyle::Backslashes;
    if (from == to)
        return;
    if (from == ZVPathStyle::FileURL && (to == ZVPathStyle::Backslashes || to == ZVPathStyle::URLPath))
    {
        if (!ClearFileScheme(path))
            return;
        if (to == ZVPathStyle::Backslashes)
            path.TrimLeft(L'/');
        DecodePercentEscapes(path);
    }
    if (to == ZVPathStyle::ForwardSlashes)
        path.Replace(L"\\", L"/");
    else if (to == ZVPathStyle::Backslashes)
        path.Replace(L"/", L"\\");
}

void ZVFilename::MakeFileSystemPath(ZVString& path)
{
    ConvertPathStyle(path, ZVPathStyle::FileURL, ZVPathStyle::ForwardSlashes);
    MapInstallDrive(path);
}
