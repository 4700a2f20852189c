#include "worker/ZVSourceCleaner.h"

#include "core/containers/ZVStringArray.h"
#include "system/file/ZVFileSystem.h"
#include "worker/ZVSourceFile.h"

#include <algorithm>

namespace
{
struct Rule
{
    const wchar_t* Find;
    const wchar_t* Replacement;
};

constexpr Rule WhiteLineRules[] = {
    {L"\r\n \r\n",    L"\r\n\r\n"},
    {L"\r\n  \r\n",   L"\r\n\r\n"},
    {L"\r\n   \r\n",  L"\r\n\r\n"},
    {L"\r\n    \r\n", L"\r\n\r\n"},
    {L"\r\n\t\r\n",   L"\r\n\r\n"},
};

// Each is repeated until it finds nothing more.
constexpr Rule AccessRules[] = {
    {L" Parent;\r\n\r\npublic:",    L" Parent;\r\npublic:"   },
    {L" Parent;\r\n\r\nprivate:",   L" Parent;\r\nprivate:"  },
    {L" Parent;\r\n\r\nprotected:", L" Parent;\r\nprotected:"},
    {L"public:\r\n\r\n",            L"public:\r\n"           },
    {L"private:\r\n\r\n",           L"private:\r\n"          },
    {L"protected:\r\n\r\n",         L"protected:\r\n"        },
};

constexpr const wchar_t* Extensions[] = {L"h"};

// The file that holds these rules as texts. No extension of the list leads to it yet.
constexpr wchar_t RulesFile[] = L"ZVWorker.cpp";

// With either separator.
constexpr const wchar_t* ForeignFolders[] = {
    L"\\ThirdParty\\",
    L"\\SharedFiles\\QuickTime\\",
    L"\\Plugins\\Web Browser\\Gecko SDK\\",
    L"\\Plugins\\Shared\\",
};

constexpr int32_t NarrowMode = 1;
constexpr int32_t MarkedUTF8Mode = 5;

bool IsLeftAlone(const ZVString& path)
{
    if (path.EndsWith(RulesFile, false))
        return true;
    ZVString uniform = path;
    uniform.Replace(L"/", L"\\");
    return std::ranges::any_of(ForeignFolders, [&](const wchar_t* folder) { return uniform.Find(folder) != -1; });
}

void CleanText(ZVString& text)
{
    for (const Rule& rule : WhiteLineRules)
        text.Replace(rule.Find, rule.Replacement);
    for (const Rule& rule : AccessRules)
        while (text.Replace(rule.Find, rule.Replacement) > 0)
        {
        }
}

int32_t ChooseSaveMode(const ZVString& text)
{
    const auto needsUTF8 = [](wchar_t character) { return character >= 128 && character <= 65535; };
    return std::ranges::any_of(text.View(), needsUTF8) ? MarkedUTF8Mode : NarrowMode;
}

void CleanFile(const ZVString& path)
{
    ZVString text;
    if (!LoadSourceFile(path, ZVEncoding::Detect, text))
        return;
    const ZVString before = text;
    CleanText(text);
    if (text != before)
        text.SaveToFile(path, ChooseSaveMode(text));
}
}

void CleanSources(const ZVString& folder)
{
    ZVStringArray extensions;
    for (const wchar_t* extension : Extensions)
        extensions.Add(extension);
    ZVStringArray paths;
    ZVFileSystem::FindFiles(folder, paths, true, extensions);
    for (const ZVString& path : paths)
        if (!IsLeftAlone(path))
            CleanFile(path);
}
