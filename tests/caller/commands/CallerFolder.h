#pragma once

#include "process/WorkFolder.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

// What came of a run of the real caller.
struct CallerRun
{
    int Status = -1;  // the exit status, or 128 and the signal that ended it
    std::string Output;
    std::string Error;
};

// The real caller at work, with settings of the environment ("NAME=value") and with what a function changes in its process before.
class CallerProcess
{
public:
    CallerProcess(
        std::vector<std::string> arguments, const std::vector<std::string>& settings,
        const std::function<void()>& prepare = [] {})
    {
        arguments.insert(arguments.begin(), ZV_CALLER_PROGRAM);
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        m_pid = fork();
        if (m_pid != 0)
            return;
        dup2(m_output, STDOUT_FILENO);
        dup2(m_error, STDERR_FILENO);
        for (const std::string& setting : settings)
            putenv(const_cast<char*>(setting.c_str()));
        prepare();
        execv(argv[0], argv.data());
        _exit(127);
    }

    void Kill(int signal) const { kill(m_pid, signal); }

    CallerRun Finish()
    {
        int status = 0;
        waitpid(m_pid, &status, 0);
        const auto readAll = [](int file)
        {
            const std::string text = WorkFolder::Read("/proc/self/fd/" + std::to_string(file));
            close(file);
            return text;
        };
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readAll(m_output), readAll(m_error)};
    }

private:
    // Files without a name.
    int m_output = memfd_create("output", MFD_CLOEXEC);
    int m_error = memfd_create("error", MFD_CLOEXEC);
    pid_t m_pid = 0;
};

// A working folder with a library, "films", and its catalog, "films.db". The caller has the temporary files in "temporary".
class CallerFolder : public WorkFolder
{
public:
    CallerFolder()
    {
        for (const char* const folder : {"films", "temporary"})
            std::filesystem::create_directory(folder);
    }

    std::vector<std::string> GetSettings() const
    {
        return {"TMPDIR=" + PathOf("temporary"), "XDG_DATA_HOME=" + PathOf("data"), "STAND_IN_RUNS=" + PathOf("runs")};
    }

    CallerProcess Start(
        const std::vector<std::string>& arguments, const std::function<void()>& prepare = [] {}) const
    {
        return {arguments, GetSettings(), prepare};
    }
    CallerRun Run(
        const std::vector<std::string>& arguments, const std::function<void()>& prepare = [] {}) const
    {
        return Start(arguments, prepare).Finish();
    }

    // The arguments of a scan of the library.
    static std::vector<std::string> Scan(const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = {"scan", "films", "--to", "films.db"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    // The same with the stand-in of the worker, which makes no pictures.
    static std::vector<std::string> StandInScan(const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = Scan({"--basic", "--worker", ZV_WORKER_STAND_IN});
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    static void AddFilms(const std::vector<std::string>& names)
    {
        for (const std::string& name : names)
            Write("films/" + name, name);
    }

    // What the list has of each film, by the paths below the library.
    std::map<std::string, nlohmann::json> List(std::vector<std::string> more = {}) const
    {
        std::vector<std::string> arguments = {"list", "films.db", "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const CallerRun run = Run(arguments);
        EXPECT_EQ(run.Status, 0) << run.Error;
        std::map<std::string, nlohmann::json> films;
        std::istringstream lines(run.Output);
        for (std::string line; std::getline(lines, line);)
        {
            const nlohmann::json film = nlohmann::json::parse(line);
            const std::string path = film["path"];
            const bool isNew = films.emplace(path.substr(PathOf("films/").size()), film).second;
            EXPECT_TRUE(isNew) << path << " is listed twice";
        }
        return films;
    }
    // The runs of the stand-in since the last call, sorted: "/AnalyzeZVVid a.mkv".
    static std::vector<std::string> TakeRuns()
    {
        std::vector<std::string> runs;
        std::ifstream file("runs");
        for (std::string line; std::getline(file, line);)
            runs.push_back(line);
        std::filesystem::remove("runs");
        std::sort(runs.begin(), runs.end());
        return runs;
    }

    // Expects that no process that the caller started is left, and no temporary file.
    void ExpectNothingLeft() const
    {
        ExpectNoProcessLeft();
        std::vector<std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator("temporary"))
            files.push_back(entry.path());
        EXPECT_EQ(files, std::vector<std::string>());
    }
    // A killed process takes its time to go.
    void ExpectNoProcessLeft() const
    {
        std::vector<std::string> processes;
        for (int tries = 0; tries < 100; ++tries)
        {
            processes = FindProcesses();
            if (processes.empty())
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        EXPECT_EQ(processes, std::vector<std::string>());
    }
    // The command lines of the processes that got the folder for temporary files from here.
    std::vector<std::string> FindProcesses() const
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator("/proc"))
            if (Read(entry.path() / "environ").find("TMPDIR=" + PathOf("temporary")) != std::string::npos)
                found.push_back(Read(entry.path() / "cmdline"));
        return found;
    }
    // Waits until the stand-in runs for a film of this name. False if it does not come.
    bool WaitForRun(const std::string& name) const
    {
        for (int tries = 0; tries < 200; ++tries)
        {
            if (Read("runs").find(name) != std::string::npos)
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return false;
    }
};
