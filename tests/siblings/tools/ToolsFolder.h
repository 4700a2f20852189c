#pragma once

#include "contracts/IZVApplicationInformation.h"
#include "core/string/ZVString.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
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

// An empty folder of the test's own, removed with what is in it. The variables that the library looks at are unset while it
// lives.
class ToolsFolder
{
public:
    ToolsFolder()
    {
        std::string path = (std::filesystem::temp_directory_path() / "zv-tools-XXXXXX").string();
        m_path = std::string(mkdtemp(path.data())) + "/";
        for (const char* name : {"ZV_DATA_DIR", "ZV_LOG_FILE", "ZV_LOG_MASK"})
            unsetenv(name);
    }
    ~ToolsFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
        for (const char* name : {"ZV_LOG_FILE", "ZV_LOG_MASK"})
            unsetenv(name);
    }
    ToolsFolder(const ToolsFolder&) = delete;
    ToolsFolder& operator=(const ToolsFolder&) = delete;

    ZVString AsString() const { return ZVString::FromUTF8(m_path.c_str()); }
    std::string PathOf(const std::string& name) const { return m_path + name; }
    bool Has(const std::string& name) const { return std::filesystem::exists(PathOf(name)); }

    std::string Read(const std::string& name) const
    {
        std::ifstream file(PathOf(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Write(const std::string& name, const std::string& content) const
    {
        std::filesystem::create_directories(std::filesystem::path(PathOf(name)).parent_path());
        std::ofstream(PathOf(name), std::ios::binary) << content;
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
    std::string m_path;
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
    bool isGood = true;
    for (int status = 0; count > 0; --count)
        isGood = wait(&status) > 0 && status == 0 && isGood;
    return isGood;
}
