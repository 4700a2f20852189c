// Tests of the shared library itself, as the worker loads it.

#include "siblings/reader/ReaderFixture.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <unistd.h>

namespace
{
// What a command prints, each line ended by a blank.
std::string OutputOf(const std::string& command)
{
    FILE* const stream = popen((command + " | tr '\\n' ' '").c_str(), "r");
    std::string output(4096, '\0');
    output.resize(fread(output.data(), 1, output.size(), stream));
    pclose(stream);
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

// An exported function of a library that is loaded by its path.
template <class Function>
Function* Load(const char* path, const char* name)
{
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    return library == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(library, name));
}

bool IsLibcurlLoaded()
{
    return dlopen("libcurl.so.4", RTLD_LAZY | RTLD_NOLOAD) != nullptr;
}

// True when a file leaves libcurl out and an address does not.
bool LoadsLibcurlWithAnAddress()
{
    auto* const create = Load<ZVCreateReaderByName>(ZV_READER_LIBRARY, "CreateGenericReaderDLL");
    const ReaderPointer file(create(L"/etc/passwd"));
    const ReaderPointer address(create(L"http://127.0.0.1:1/"));
    if (!file->Open() || ReadAll(*file).empty() || IsLibcurlLoaded())
        return false;
    setenv("no_proxy", "127.0.0.1", 1);
    return !address->Open() && IsLibcurlLoaded();
}

// In a process of its own, since what a process has loaded stays.
TEST(ReaderLibrary, OpensLibcurlWithTheFirstAddressAlone)
{
    if (IsLibcurlLoaded())
        GTEST_SKIP() << "another test of this process has opened an address";
    EXPECT_EXIT(_exit(LoadsLibcurlWithAnAddress() ? 0 : 1), testing::ExitedWithCode(0), "");
}
}
