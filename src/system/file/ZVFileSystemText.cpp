// Sizes as text, and names.

#include "system/file/ZVFileError.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <climits>
#include <cmath>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource GetProgramFilenameSource {ZVLogCategory::General, L"ZVFileSystem::GetProgramFilename"};
constexpr ZVLogSource GetComputerNameSource {ZVLogCategory::General, L"ZVFileSystem::GetComputerName"};

// A unit, the largest size that is too small for it, and the power of two that it stands for.
struct SizeUnit
{
    uint64_t Limit;
    const wchar_t* Suffix;
    int Power;
};

constexpr SizeUnit SizeUnits[] = {
    {0x3ffffffffffff, L"PB", 50},
    {0xffffffffff,    L"TB", 40},
    {0x3fffffff,      L"GB", 30},
    {0xfffff,         L"MB", 20},
    {1023,            L"KB", 10},
};

// Units that are read. Callers expect every other one to count as bytes.
struct ReadUnit
{
    const wchar_t* Suffix;
    int Power;
};

constexpr ReadUnit ReadUnits[] = {
    {L"kb", 10},
    {L"gb", 30},
    {L"tb", 40},
    {L"pb", 50},
};

constexpr wchar_t Replacement = L'_';
constexpr wchar_t LastControlCharacter = 0x1f;
constexpr wchar_t DeleteCharacter = 0x7f;
constexpr size_t ProgramPathSize = 0x7fff;

bool IsControl(wchar_t character)
{
    return (character >= 0 && character <= LastControlCharacter) || character == DeleteCharacter;
}

// A name for which "_" stands in the place of separators too.
ZVString MakeName(ZVString text)
{
    ZVFileSystem::ReplaceForbiddenCharacters(text);
    text.Replace(L"/", L"_");
    text.Replace(L"\\", L"_");
    return text;
}

// Whether a name is taken, even if only by a link that leads nowhere.
bool IsTaken(const ZVString& path)
{
    struct stat status;
    return lstat(ZVNativePath(path), &status) == 0;
}
}

ZVString ZVFileSystem::FormatFileSize(int64_t size)
{
    const uint64_t magnitude = size < 0 ? 0 - static_cast<uint64_t>(size) : static_cast<uint64_t>(size);
    const wchar_t* const sign = size < 0 ? L"-" : L"";
    for (const SizeUnit& unit : SizeUnits)
    {
        if (magnitude <= unit.Limit)
            continue;
        const double value = std::ldexp(static_cast<double>(magnitude), -unit.Power);
        return ZVFormat(L"%s%s %s", sign, ZVString::FromDouble(value, value < 10 ? 1 : 0, true), unit.Suffix);
    }
    return ZVFormat(L"%s%d bytes", sign, magnitude);
}

int64_t ZVFileSystem::ParseFileSize(const ZVString& text)
{
    int32_t consumed = 0;
    double value = text.ToDouble(&consumed, true);
    ZVString suffix = text.Mid(consumed);
    suffix.TrimWhitespace();
    for (const ReadUnit& unit : ReadUnits)
        if (suffix.StartsWith(unit.Suffix, false))
            value = std::ldexp(value, unit.Power);
    if (value >= static_cast<double>(INT64_MAX))
        return INT64_MAX;
    if (value <= static_cast<double>(INT64_MIN))
        return INT64_MIN;
    return std::llround(value);
}

ZVString ZVFileSystem::GetUniqueFilename(const ZVString& directory, const ZVString& base, const ZVString& extension)
{
    const ZVString folder = directory.IsEmpty() ? GetDirectoryTemp() : ZVPathLayout::WithClosingSlash(directory);
    const ZVString name = folder + MakeName(base);
    const ZVString end = extension.IsEmpty() ? ZVString() : L"." + MakeName(extension);
    ZVString path = name + end;
    for (int32_t number = 1; IsTaken(path); ++number)
        path = name + ZVFormat(L" - %d", number) + end;
    return path;
}

void ZVFileSystem::ReplaceForbiddenCharacters(ZVString& path)
{
    for (int32_t index = 0; index < path.GetLength(); ++index)
        if (IsControl(path[index]))
            path.SetAt(index, Replacement);
}

ZVString ZVFileSystem::GetProgramFilename()
{
    char path[ProgramPathSize + 1];
    const ssize_t length = readlink("/proc/self/exe", path, ProgramPathSize);
    if (length == -1)
    {
        ZVLogFileError(GetProgramFilenameSource, "Error %d asking for the path of: %s", L"/proc/self/exe");
        return {};
    }
    path[length] = '\0';
    return ZVNativePath::ToText(path);
}

ZVString ZVFileSystem::GetComputerName()
{
    char name[HOST_NAME_MAX + 1] = {};
    if (gethostname(name, HOST_NAME_MAX) == 0)
        return ZVString::FromUTF8(name);
    ZVLogFileError(GetComputerNameSource, "Error %d asking for the name of: %s", L"this machine");
    return {};
}
