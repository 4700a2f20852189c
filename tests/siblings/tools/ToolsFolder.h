#pragma once

#include "contracts/IZVApplicationInformation.h"
#include "core/string/ZVString.h"
#include "process/WorkFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// What a process tells of itself.
struct FakeInformation final : IZVApplicationInformation
{
    const wchar_t* GetProductName() override { return L"Lantern Deck"; }
    const wchar_t* GetInstallDirectory() override { return L"/opt/zv"; }
    const wchar_t* GetDataDirectory() override { return Data; }
    const wchar_t* Data = L"/nowhere/at/all";
};

// An empty folder of the test's own. The variables that the library looks at are unset at both ends of its life.
class ToolsFolder : public WorkFolder
{
public:
    ToolsFolder() { Unset(); }
    ~ToolsFolder() { Unset(); }

    ZVString AsString() const { return ZVString::FromUTF8(PathOf("").c_str()); }
    bool Has(const std::string& name) const { return std::filesystem::exists(PathOf(name)); }

    // The files are those of this folder, whichever folder is the working folder.
    std::string Read(const std::string& name) const { return WorkFolder::Read(PathOf(name)); }
    void Write(const std::string& name, const std::string& content) const
    {
        std::filesystem::create_directories(std::filesystem::path(PathOf(name)).parent_path());
        WorkFolder::Write(PathOf(name), content);
    }
    // The lines of a file, whose last line must be ended too.
    std::vector<std::string> ReadLines(const std::string& name) const
    {
        const std::string content = Read(name);
        EXPECT_TRUE(content.empty() || content.back() == '\n') << "the last line of " << name << " has no end";
        std::istringstream stream(content);
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }

private:
    static void Unset()
    {
        for (const char* name : {"ZV_DATA_DIR", "ZV_LOG_FILE", "ZV_LOG_MASK"})
            unsetenv(name);
    }
};

// Runs work(0) to work(count - 1) at once, each in a process of its own. True when every one returned true.
inline bool RunProcesses(int count, const std::function<bool(int)>& work)
{
    // Nobody starts before the pipe is closed on this side.
    int gate[2];
    if (pipe(gate) != 0)
        return false;
    for (int index = 0; index < count; ++index)
    {
        if (fork() != 0)
            continue;
        close(gate[1]);
        char byte;
        const bool isOpen = read(gate[0], &byte, 1) == 0;
        _exit(isOpen && work(index) ? 0 : 1);
    }
    close(gate[0]);
    close(gate[1]);
    int failures = 0;
    for (int status = 0; count > 0; --count)
        failures += wait(&status) < 0 || status != 0;
    return failures == 0;
}
