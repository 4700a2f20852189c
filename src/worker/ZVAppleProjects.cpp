#include "worker/ZVAppleProjects.h"

#include "core/containers/ZVStringArray.h"
#include "system/file/ZVFileSystem.h"
#include "worker/ZVSourceFile.h"

namespace
{
struct BuildSetting
{
    const wchar_t* Name;
    const wchar_t* Value;
};

constexpr BuildSetting BuildSettings[] = {
    {L"DEAD_CODE_STRIPPING",           L"YES" },
    {L"CLANG_X86_VECTOR_INSTRUCTIONS", L"sse2"},
    {L"GCC_SYMBOLS_PRIVATE_EXTERN",    L"YES" },
    {L"MACOSX_DEPLOYMENT_TARGET",      L"10.6"},
};

constexpr const wchar_t* Configurations[] = {L"Release;", L"Debug;"};

constexpr wchar_t SectionBegin[] = L"/* Begin XCBuildConfiguration section */";
constexpr wchar_t SectionEnd[] = L"/* End XCBuildConfiguration section */";
constexpr wchar_t SettingsBegin[] = L"\n\t\t\tbuildSettings = {\n";
constexpr wchar_t SettingsEnd[] = L"\n\t\t\t};\n\t\t\tname = ";

constexpr int32_t UTF8Mode = 2;

void SetBuildSetting(const wchar_t* name, const wchar_t* value, ZVStringArray& lines)
{
    ZVString prefix;
    prefix.Format(L"\t\t\t\t%s = ", name);
    ZVString setting;
    setting.Format(L"%s%s;", prefix, value);
    for (ZVString& line : lines)
        if (line.StartsWith(prefix, false))
        {
            line = setting;
            return;
        }
    lines.Add(setting);
}

// Puts the settings of one kind of configuration, together with the markers around them, in the place of what stood between.
class CReplace final : public IZVStringTokenReplaceCallback
{
public:
    explicit CReplace(const wchar_t* configuration) : m_configuration(configuration) {}

    ZVString ReplaceToken(const ZVString& token) override
    {
        ZVStringArray lines;
        lines.SetSplit(token, L'\n');
        for (const BuildSetting& setting : BuildSettings)
            SetBuildSetting(setting.Name, setting.Value, lines);
        return ZVString(SettingsBegin) + lines.GetJoined(L"\n") + SettingsEnd + m_configuration;
    }

private:
    const wchar_t* m_configuration;
};

void UpdateProject(const ZVString& path)
{
    ZVString text;
    if (!LoadSourceFile(path, ZVEncoding::UTF8, text))
        return;
    ZVString section = text.GetBetween(SectionBegin, SectionEnd);
    if (section.IsEmpty())
        return;
    const int32_t start = text.Find(SectionBegin) + static_cast<int32_t>(std::size(SectionBegin)) - 1;
    const int32_t end = start + section.GetLength();
    for (const wchar_t* configuration : Configurations)
    {
        CReplace replace(configuration);
        section.ReplaceTokens(SettingsBegin, ZVString(SettingsEnd) + configuration, replace);
    }
    text.Replace(start, end, section);
    text.SaveToFile(path, UTF8Mode);
}
}

void UpdateBuildSettings(const ZVString& folder)
{
    ZVStringArray extensions;
    extensions.Add(L"pbxproj");
    ZVStringArray paths;
    ZVFileSystem::FindFiles(folder, paths, true, extensions);
    for (const ZVString& path : paths)
        UpdateProject(path);
}
