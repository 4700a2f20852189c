// Tests of the shared library itself, as the worker loads it.

#include "siblings/reader/ReaderFixture.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <memory>

namespace
{
// What a command prints, each line ended by a blank.
std::string OutputOf(const std::string& command)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(popen((command + " | tr '\\n' ' '").c_str(), "r"), pclose);
    std::string output(4096, '\0');
    output.resize(fread(output.data(), 1, output.size(), stream.get()));
    return output;
}

TEST(ReaderLibrary, ExportsItsEntryPointsAndNeedsTheCLibraryAlone)
{
#if defined(ZV_IS_SANITIZED)
    GTEST_SKIP() << "a sanitized library exports and needs what the sanitizers want";
#endif
    if (OutputOf("command -v nm").empty())
        GTEST_SKIP() << "nm is not installed";
    EXPECT_EQ(OutputOf("nm -D --defined-only '" ZV_READER_LIBRARY "' | awk '{print $NF}' | sort"),
              "CreateFromMemoryReaderDLL CreateGenericReaderDLL CreateInternetReaderDLL CreateLocalReaderDLL "
              "ZVReaderInitialize ZVReaderUninitialize ");
    EXPECT_THAT(OutputOf("readelf -d '" ZV_READER_LIBRARY "' | grep NEEDED | awk '{print $NF}'"),
                testing::MatchesRegex("(.(libc|libm|ld-linux[-_a-z0-9]*)\\.so\\.[0-9]+. )+"));
}
}
