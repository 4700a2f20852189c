#pragma once

#include "RunWorker.h"
#include "WorkFolder.h"

// A copy of the worker in a folder of its own, away from its libraries but with a tools library when one is given. RunWorker
// runs it while this lives.
class LoneWorker : public WorkFolder
{
public:
    explicit LoneWorker(const std::string& tools = "")
    {
        if (!tools.empty())
            std::filesystem::copy_file(tools, PathOf("libZVTools.so"));
        std::filesystem::copy_file(m_original, PathOf("ZVWorker"));
        setenv("ZV_WORKER_PROGRAM", PathOf("ZVWorker").c_str(), 1);
    }
    ~LoneWorker() { setenv("ZV_WORKER_PROGRAM", m_original.c_str(), 1); }

private:
    const std::string m_original = GetWorkerProgram();
};
