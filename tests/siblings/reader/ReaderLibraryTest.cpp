// Tests of the shared library itself, as the worker loads it.

#include "siblings/reader/ReaderFixture.h"
#include "siblings/tools/ToolsFolder.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <vector>

namespace
{
#if defined(ZV_IS_SANITIZED)
constexpr bool IsSanitized = true;
#else
constexpr bool IsSanitized = false;
#endif

// The last words of the lines that a command prints.
std::vector<std::string> LastWordsOf(const std::string& command)
{
    std::vector<std::string> words;
    FILE* const stream = popen(command.c_str(), "r");
    char line[1024];
    while (stream != nullptr && fgets(line, sizeof line, stream) != nullptr)
    {
        line[strcspn(line, "\n")] = '\0';
        words.emplace_back(strrchr(line, ' ') == nullptr ? line : strrchr(line, ' ') + 1);
    }
    if (stream != nullptr)
        pclose(stream);
    return words;
}

TEST(ReaderLibrary, ExportsItsEntryPointsAndNeedsTheCLibraryAlone)
{
    if (IsSanitized)
        GTEST_SKIP() << "a sanitized library exports and needs what the sanitizers want";
    if (LastWordsOf("command -v nm").empty())
        GTEST_SKIP() << "nm is not installed";
    EXPECT_THAT(LastWordsOf("nm -D --defined-only '" ZV_READER_LIBRARY "'"),
                testing::UnorderedElementsAre("CreateFromMemoryReaderDLL", "CreateGenericReaderDLL", "CreateInternetReaderDLL",
                                              "CreateLocalReaderDLL", "ZVReaderInitialize", "ZVReaderUninitialize"));
    const std::vector<std::string> needed = LastWordsOf("readelf -d '" ZV_READER_LIBRARY "' | grep NEEDED");
    EXPECT_THAT(needed, testing::Not(testing::IsEmpty()));
    EXPECT_THAT(needed, testing::Each(testing::ContainsRegex("^.(libc|libm|ld-linux[-_a-z0-9]*)\\.so\\.[0-9]+.$")));
}

using Initialize = void(int32_t);

// An exported function of a library that is loaded by its path.
template <class Function>
Function* Load(const char* path, const char* name)
{
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    return library == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(library, name));
}

// The last line that the reader library logs when it refuses a folder, as the tools library of this process writes it.
std::string GetLogLine(const ToolsFolder& folder)
{
    Initialize* const initialize = Load<Initialize>(ZV_READER_LIBRARY, "ZVReaderInitialize");
    ZVCreateReaderByName* const create = Load<ZVCreateReaderByName>(ZV_READER_LIBRARY, "CreateGenericReaderDLL");
    // Without a tools library a reader does its work and is silent.
    initialize(7);
    ReaderPointer(create(folder.AsString()))->Open();
    Load<void()>(ZV_READER_LIBRARY, "ZVReaderUninitialize")();

    IZVTools* const tools = Load<IZVTools*(int32_t)>(ZV_TOOLS_LIBRARY, "GetZVToolsDLL")(IZVTools::InterfaceVersion);
    setenv("ZV_DATA_DIR", folder.PathOf("data").c_str(), 1);
    tools->Initialize(1, nullptr);
    initialize(7);
    ReaderPointer(create(folder.AsString()))->Open();
    tools->GetLogManager(true)->Flush();
    const std::vector<std::string> lines = folder.ReadLines("data/Logs/ZVWorker.log");
    return lines.size() == 1 ? lines[0] : "not one line";
}

bool IsLibcurlLoaded()
{
    return dlopen("libcurl.so.4", RTLD_LAZY | RTLD_NOLOAD) != nullptr;
}

// True when a file leaves libcurl out and an address does not.
bool LoadsLibcurlWithAnAddress()
{
    ZVCreateReaderByName* const create = Load<ZVCreateReaderByName>(ZV_READER_LIBRARY, "CreateGenericReaderDLL");
    const ReaderPointer file(create(L"/etc/passwd"));
    const ReaderPointer address(create(L"http://127.0.0.1:1/"));
    if (!file->Open() || ReadAll(*file).empty() || IsLibcurlLoaded())
        return false;
    setenv("no_proxy", "127.0.0.1", 1);
    return !address->Open() && IsLibcurlLoaded();
}

// In processes of their own, since what a process has loaded stays.
TEST(ReaderLibrary, LogsThroughTheToolsLibraryOfTheProcess)
{
    const ToolsFolder folder;
    const auto work = [&](int)
    {
        const std::string line = GetLogLine(folder);
        return line.find("it is a folder") != std::string::npos;
    };
    EXPECT_TRUE(RunProcesses(1, work));
}

TEST(ReaderLibrary, OpensLibcurlWithTheFirstAddressAlone)
{
    if (IsLibcurlLoaded())
        GTEST_SKIP() << "another test of this process has opened an address";
    EXPECT_TRUE(RunProcesses(1, [](int) { return LoadsLibcurlWithAnAddress(); }));
}
}
