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
#include <numeric>
#include <sched.h>
#include <set>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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

    // The names in the folder, sorted and with a blank behind each.
    std::string List(const std::string& name = "") const
    {
        if (!IsAt(name))
            return "(none)";
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(At(name)))
            names.insert(entry.path().filename().string() + " ");
        return std::accumulate(names.begin(), names.end(), std::string());
    }

    void ExpectLogged(const std::string& part)
    {
        EXPECT_THAT(m_tools.Manager.Lines, testing::Contains(testing::HasSubstr(part)));
    }

    // Runs a function in a process of its own, in which its expectations count too. What is skipped there is skipped here.
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

    // Runs a function again and again in four processes at the same time, each with its number. It must always give true.
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

    // In a process that only has the rights that the modes give, be it the owner's. A test that root runs becomes another user.
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

    // In a process with a file system of 64 kilobytes in the memory, mounted on the folder "disk".
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
