#include "siblings/tools/CApplicationInformation.h"

#include "ToolsFolder.h"
#include "siblings/tools/CDataFolder.h"

namespace
{
void Set(const char* name, const char* value)
{
    value == nullptr ? unsetenv(name) : setenv(name, value, 1);
}

// The data folder of a process that sets a directory or, for null, has no information at all.
ZVString FolderOf(const char* environment, const wchar_t* given, const char* home)
{
    Set("ZV_DATA_DIR", environment);
    Set("HOME", home);
    FakeInformation information;
    information.Data = given;
    return CDataFolder::Find(CApplicationInformation(given == nullptr ? nullptr : &information).GetDataDirectory());
}

TEST(CApplicationInformation, TheDataDirectoryComesFromTheEnvironmentTheProcessOrTheHomeFolder)
{
    const ToolsFolder folder;
    const std::string home = getenv("HOME") == nullptr ? "" : getenv("HOME");
    EXPECT_STREQ(FolderOf("/env", L"/given", "/home/u"), L"/env/");
    EXPECT_STREQ(FolderOf("/\xc3\xa4/", L"", "/home/u"), L"/\u00e4/");
    EXPECT_STREQ(FolderOf(nullptr, L"", "/home/u/"), L"/home/u/.zivora/Generic/");
    EXPECT_STREQ(FolderOf(nullptr, L"", nullptr), L"");
    EXPECT_STREQ(FolderOf(nullptr, nullptr, "/home/u"), L"/home/u/.zivora/Generic/");
    Set("ZV_DATA_DIR", nullptr);
    Set("HOME", home.c_str());
}
}
