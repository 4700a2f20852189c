#include "RatioReport.h"

#include "contracts/ILogManager.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "system/log/ZVLogScope.h"

#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
constexpr uint32_t Category = 256;
constexpr int ProcessCount = 4;
constexpr int LineCount = 5000;

// The log manager of the real library, in a folder of its own that goes with this object.
class Library
{
public:
    Library()
    {
        std::string folder = (std::filesystem::temp_directory_path() / "zv-log-bench-XXXXXX").string();
        m_folder = mkdtemp(folder.data());
        setenv("ZV_DATA_DIR", m_folder.c_str(), 1);
        void* const library = dlopen(ZV_TOOLS_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr)
            return;
        auto* const getTools = reinterpret_cast<IZVTools* (*)(int32_t)>(dlsym(library, "GetZVToolsDLL"));
        IZVTools* const tools = getTools == nullptr ? nullptr : getTools(IZVTools::InterfaceVersion);
        if (tools != nullptr && tools->Initialize(0, nullptr))
            m_tools = tools;
    }
    ~Library() { std::filesystem::remove_all(m_folder); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    static Library& Get()
    {
        static Library s_library;
        return s_library;
    }
    IZVTools* GetTools() const { return m_tools; }
    const std::string& GetFolder() const { return m_folder; }

private:
    std::string m_folder;
    IZVTools* m_tools = nullptr;
};

// Binds the library to this program's copy of the core for a scope, with a mask.
class BoundLibrary
{
public:
    BoundLibrary(benchmark::State& state, uint32_t mask)
    {
        g_pZVTools = Library::Get().GetTools();
        if (g_pZVTools == nullptr)
            state.SkipWithError("the tools library cannot be loaded");
        else
            g_pZVTools->GetLogManager(false)->SetCategoryMask(mask);
    }
    ~BoundLibrary() { g_pZVTools = nullptr; }
    BoundLibrary(const BoundLibrary&) = delete;
    BoundLibrary& operator=(const BoundLibrary&) = delete;
};

void LogIntoACategoryThatIsOff(benchmark::State& state)
{
    const BoundLibrary library(state, ~Category);
    const ZVLogScope scope(Category, L"LogBench", false);
    const ZVString path(L"/films/a film.mkv");
    int frame = 0;
    for (auto _ : state)
        scope.Log("frame %d of %s", frame++, path);
}

void ReadTheClock(benchmark::State& state)
{
    timespec now {};
    for (auto _ : state)
    {
        clock_gettime(CLOCK_MONOTONIC, &now);
        benchmark::DoNotOptimize(now);
    }
}

// Runs the work in several processes at once, again and again.
template <class Work>
void RunInProcesses(benchmark::State& state, Work work)
{
    for (auto _ : state)
    {
        for (int process = 0; process < ProcessCount; ++process)
        {
            if (fork() != 0)
                continue;
            work();
            _exit(0);
        }
        while (wait(nullptr) > 0)
        {
        }
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * ProcessCount * LineCount);
}

void LogFromProcesses(benchmark::State& state)
{
    const BoundLibrary library(state, Category);
    if (g_pZVTools == nullptr)
        return;
    RunInProcesses(state,
                   []
                   {
                       const ZVLogScope scope(Category, L"LogBench", false);
                       for (int line = 0; line < LineCount; ++line)
                           scope.Log("frame %d of %s", line, L"/films/a film.mkv");
                   });
}

// Lines of the same size, made beforehand, on the same file system.
void WriteFromProcesses(benchmark::State& state)
{
    static constexpr char Line[] = "2026-03-01T12:34:56.789Z\t12345\t12345\t256\tLogBench\tframe 1234 of /films/a film.mkv\n";
    const std::string path = Library::Get().GetFolder() + "/plain.log";
    RunInProcesses(state,
                   [&]
                   {
                       const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
                       for (int line = 0; line < LineCount; ++line)
                           if (write(file, Line, sizeof Line - 1) < 0)
                               _exit(1);
                       close(file);
                   });
    unlink(path.c_str());
}

ZV_COMPARE(LogCategoryOff, 1.0, LogIntoACategoryThatIsOff, ReadTheClock, "clock_gettime");
ZV_COMPARE(LogFourProcesses, 3.0, LogFromProcesses, WriteFromProcesses, "write");
}
