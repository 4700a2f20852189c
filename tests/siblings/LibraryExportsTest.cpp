// Tests of the shared libraries as the worker loads them.

#include "siblings/tools/ToolsFolder.h"

#include <gmock/gmock.h>

namespace
{
// The lines that a command prints.
std::vector<std::string> OutputOf(const std::string& command)
{
    const ToolsFolder folder;
    EXPECT_NE(system(("(" + command + ") > " + folder.PathOf("output")).c_str()), -1);
    return folder.ReadLines("output");
}

struct Library
{
    const char* File;
    std::vector<std::string> EntryPoints;
};

const Library Libraries[] = {
    {ZV_TOOLS_LIBRARY,      {"GetZVToolsDLL"}      },
    {ZV_READER_LIBRARY,
     {"CreateFromMemoryReaderDLL", "CreateGenericReaderDLL", "CreateInternetReaderDLL", "CreateLocalReaderDLL",
      "ZVReaderInitialize", "ZVReaderUninitialize"}},
    {ZV_IMAGE_LIBRARY,      {"GetZVImageAppDLL"}   },
    {ZV_PLAYER_LIBRARY,     {"GetZVPlayerDLL"}     },
    {ZV_WM_FACTORY_LIBRARY, {"CreateZVWMFactory"}  },
};

// Only for the libraries as they are shipped: sanitizers add exports and libraries of their own.
TEST(LibraryExports, AreTheEntryPointsAloneAndTheCLibraryIsAllThatIsNeeded)
{
#if defined(ZV_IS_SANITIZED)
    GTEST_SKIP() << "a sanitized library exports and needs what the sanitizers want";
#endif
    if (OutputOf("command -v nm && command -v readelf").size() != 2)
        GTEST_SKIP() << "nm or readelf is not installed";
    const auto isOfC = testing::ContainsRegex("\\[(libc|libm|ld-linux[-_a-z0-9]*)\\.so\\.[0-9]+\\]");
    for (const Library& library : Libraries)
    {
        SCOPED_TRACE(library.File);
        const std::string file = std::string("'") + library.File + "'";
        EXPECT_EQ(OutputOf("nm -D --defined-only " + file + " | awk '{print $NF}' | sort"), library.EntryPoints);
        EXPECT_THAT(OutputOf("readelf -d " + file + " | grep NEEDED"),
                    testing::AllOf(testing::SizeIs(testing::Gt(0)), testing::Each(isOfC)));
    }
}
}
