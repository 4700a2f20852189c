// Saving a ZVString as a text file.

#include "core/containers/ZVBuffer.h"
#include "core/string/ZVString.h"
#include "core/string/ZVUTF8.h"
#include "system/file/ZVFileError.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVWholeFile.h"
#include "system/filename/ZVFilename.h"

#include <memory>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVString::SaveToFile"};

constexpr char16_t UTF16Mark = 0xfeff;
constexpr uint8_t UTF8Mark[] = {0xef, 0xbb, 0xbf};
constexpr wchar_t LargestCharacter = 0x10ffff;
constexpr char16_t UnknownCharacter = u'?';

void AppendUnit(ZVBuffer& bytes, char32_t unit)
{
    const auto value = static_cast<char16_t>(unit);
    bytes.Append(&value, sizeof value);
}

bool AppendNarrow(const ZVString& text, ZVBuffer& bytes)
{
    int32_t size = 0;
    const std::unique_ptr<char[]> narrow(text.GetNarrow(&size));
    bytes.Append(narrow.get(), size);
    return narrow != nullptr;
}

bool AppendUTF8(const ZVString& text, ZVBuffer& bytes)
{
    int32_t size = 0;
    const std::unique_ptr<char[]> encoded(text.GetUTF8(&size));
    bytes.Append(encoded.get(), size);
    return encoded != nullptr;
}

// Units in host order; a character above U+FFFF takes two.
bool AppendUTF16(const ZVString& text, ZVBuffer& bytes)
{
    bytes.Grow(bytes.GetUsed() + static_cast<int64_t>(text.GetLength()) * static_cast<int64_t>(sizeof(char16_t)));
    for (int32_t index = 0; index < text.GetLength(); ++index)
    {
        const auto character = static_cast<char32_t>(text[index]);
        if (character > LargestCharacter)
            AppendUnit(bytes, UnknownCharacter);
        else if (character <= 0xffff)
            AppendUnit(bytes, character);
        else
        {
            AppendUnit(bytes, 0xd800 + ((character - 0x10000) >> 10));
            AppendUnit(bytes, 0xdc00 + (character & 0x3ff));
        }
    }
    return true;
}

bool AppendMarkedUTF16(const ZVString& text, ZVBuffer& bytes)
{
    AppendUnit(bytes, UTF16Mark);
    return AppendUTF16(text, bytes);
}

bool AppendMarkedUTF8(const ZVString& text, ZVBuffer& bytes)
{
    bytes.Append(UTF8Mark, sizeof UTF8Mark);
    return AppendUTF8(text, bytes);
}

struct SaveMode
{
    int32_t Mode;
    bool (*Append)(const ZVString& text, ZVBuffer& bytes);
};

constexpr SaveMode SaveModes[] = {
    {1, AppendNarrow     },
    {2, AppendUTF8       },
    {3, AppendMarkedUTF16},
    {4, AppendUTF16      },
    {5, AppendMarkedUTF8 },
};

bool Encode(const ZVString& text, int32_t mode, ZVBuffer& bytes)
{
    for (const SaveMode& saveMode : SaveModes)
        if (saveMode.Mode == mode)
            return saveMode.Append(text, bytes);
    return false;
}
}

ZVString ZVFileSystem::GetSavePath(const ZVString& path)
{
    ZVString safePath = ZVFilename(path).GetPathOnly();
    ReplaceForbiddenCharacters(safePath);
    return safePath;
}

bool ZVString::SaveToFile(const ZVString& path, int32_t mode) const
{
    // Nothing is touched for a text that cannot be written.
    ZVBuffer bytes;
    if (!Encode(*this, mode, bytes))
        return false;

    const ZVString safePath = ZVFileSystem::GetSavePath(path);
    const ZVString folder = ZVFilename::FromPath(safePath).GetDirectory();
    if (!folder.IsEmpty())
        ZVFileSystem::MakeDirectoryTree(folder);
    if (ZVWholeFile::WriteBytes(safePath, bytes.GetData(), bytes.GetUsed()))
        return true;
    ZVLogFileError(Source, "Error %d saving: %s", safePath);
    return false;
}
