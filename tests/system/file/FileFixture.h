#pragma once

#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ToolsFixture.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <iterator>
#include <sched.h>
#include <set>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::IsEmpty;

// A test with a folder of its own, open to all users, and with a log.
class FileFixture : public ToolsFixture
{
protected:
    FileFixture()
    {
        std::string name = std::filesystem::temp_directory_path() / "zvfile-XXXXXX";
        m_folder = std::string(mkdtemp(name.data())) + "/";
        chmod(m_folder.c_str(), 0777);
    }

    ~FileFixture() override
    {
        // Rights that a test took away are given back first.
        EXPECT_EQ(system(("chmod -R u+rwx " + m_folder + " && rm -rf " + m_folder).c_str()), 0);
    }

    // The path of a name in the folder, or of an absolute one, as bytes and as text.
    std::string At(const std::string& name) const { return std::filesystem::path(m_folder) / name; }
    ZVString TextAt(const std::string& name) const { return ZVNativePath::ToText(At(name).c_str()); }
    ZVFilename NameAt(const std::string& name) const { return ZVFilename::FromPath(TextAt(name)); }
    static std::string Bytes(const ZVString& text) { return ZVNativePath(text).GetBytes(); }
    bool IsAt(const std::string& name) const { return exists(std::filesystem::symlink_status(At(name))); }
    void MakeFolder(const std::string& name) const { std::filesystem::create_directories(At(name)); }
    void Link(const std::string& target, const std::string& name) const { std::filesystem::create_symlink(target, At(name)); }

    // Makes a file, and the folders that it is in.
    std::string Put(const std::string& name, const std::string& content = "x") const
    {
        std::filesystem::create_directories(std::filesystem::path(At(name)).parent_path());
        std::ofstream(At(name), std::ios::binary) << content;
        return At(name);
    }

    std::string GetAt(const std::string& name) const
    {
        std::ifstream file(At(name), std::ios::binary);
        return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(none)";
    }

    // The names in the folder, or "(none)" without one.
    std::set<std::string> List(const std::string& name = "") const
    {
        if (!IsAt(name))
            return {"(none)"};
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(At(name)))
            names.insert(entry.path().filename().string());
        return names;
    }

    void ExpectLogged(const std::string& part)
    {
        EXPECT_THAT(m_tools.Manager.Lines, testing::Contains(testing::HasSubstr(part)));
    }

    // Runs a function in a process of its own. Its expectations count, and if it skips the rest, so does the test.
    template <class Function>
    static void InChild(Function function)
    {
        constexpr int SkippedStatus = 77;
        const pid_t child = fork();
        if (child == 0)
        {
            function();
            fflush(nullptr);
            _exit(HasFailure() ? 1 : IsSkipped() ? SkippedStatus : 0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        if (WIFEXITED(status) && WEXITSTATUS(status) == SkippedStatus)
            GTEST_SKIP() << "a process of the test told why";
        EXPECT_EQ(status, 0);
    }

    // Runs a function a hundred times in each of four processes at the same time, with the number of the process. It must always
    // return true.
    template <class Function>
    static void InChildren(Function function)
    {
        for (const char* number : {"0", "1", "2", "3"})
            if (fork() == 0)
            {
                bool isDone = true;
                for (int round = 0; round < 100; ++round)
                    isDone = function(number) && isDone;
                _exit(isDone ? 0 : 1);
            }
        for (int status = -1; wait(&status) > 0;)
            EXPECT_EQ(status, 0);
    }

    // Runs a function in a process that has only the rights that the modes give. A test of root's becomes another user for it.
    template <class Function>
    static void AsNobody(Function function)
    {
        constexpr unsigned Nobody = 65534;
        const auto run = [&]
        {
            if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(Nobody) != 0 || setuid(Nobody) != 0))
                GTEST_SKIP() << "root cannot become another user here";
            function();
        };
        InChild(run);
    }

    // Runs a function in a process that sees a file system of 64 kilobytes in memory in the folder "disk".
    template <class Function>
    void WithSmallDisk(Function function) const
    {
        MakeFolder("disk");
        const auto run = [&]
        {
            if (unshare(CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                mount("tmpfs", At("disk").c_str(), "tmpfs", 0, "size=64k") != 0)
                GTEST_SKIP() << "no file system can be mounted here";
            function();
        };
        InChild(run);
    }

    std::string m_folder;
};
