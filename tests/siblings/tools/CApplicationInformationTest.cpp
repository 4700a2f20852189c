#include "siblings/tools/CApplicationInformation.h"

#include "ToolsFolder.h"
#include "siblings/tools/CDataFolder.h"

namespace
{
struct Given final : IZVApplicationInformation
{
    const wchar_t* GetProductName() override { return L"Product"; }
    const wchar_t* GetInstallDirectory() override { return L"/install/"; }
    const wchar_t* GetDataDirectory() override { return Data; }
    const wchar_t* Data = L"";
};

TEST(CApplicationInformation, TheDataDirectoryComesFromTheEnvironmentTheProcessOrTheHomeFolder)
{
    struct Row
    {
        const char* Name;
        const char* Environment;
        const wchar_t* Given;
        const char* Home;
        const wchar_t* Folder;
    };
    constexpr Row Rows[] = {
        {"environment",       "/env",       L"/given", "/home/u",  L"/env/"                   },
        {"closed already",    "/\xc3\xa4/", L"",       "/home/u",  L"/\u00e4/"                },
        {"empty environment", "",           L"/given", "/home/u",  L"/given/"                 },
        {"home folder",       nullptr,      L"",       "/home/u/", L"/home/u/.zivora/Generic/"},
        {"no home folder",    nullptr,      L"",       nullptr,    L""                        },
        {"nobody given",      nullptr,      nullptr,   "/home/u",  L"/home/u/.zivora/Generic/"},
    };
    const ToolsFolder folder;
    const char* const home = getenv("HOME");
    const std::string savedHome = home == nullptr ? "" : home;
    const auto set = [](const char* name, const char* value) { value == nullptr ? unsetenv(name) : setenv(name, value, 1); };
    for (const Row& row : Rows)
    {
        SCOPED_TRACE(row.Name);
        set("ZV_DATA_DIR", row.Environment);
        set("HOME", row.Home);
        Given given;
        given.Data = row.Given;
        CApplicationInformation information(row.Given == nullptr ? nullptr : &given);
        EXPECT_STREQ(CDataFolder::Find(information.GetDataDirectory()), row.Folder);
    }
    unsetenv("ZV_DATA_DIR");
    setenv("HOME", savedHome.c_str(), 1);
}
}
