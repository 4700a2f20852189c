#pragma once

#include "RunWorker.h"
#include "WorkFolder.h"

// A copy of the worker in a folder of its own, away from its libraries, which RunWorker runs while this lives.
class LoneWorker : public WorkFolder
{
public:
    LoneWorker()
    {
        std::filesystem::copy_file(m_original, PathOf("ZVWorker"));
        setenv("ZV_WORKER_PROGRAM", PathOf("ZVWorker").c_str(), 1);
    }
    ~LoneWorker() { setenv("ZV_WORKER_PROGRAM", m_original.c_str(), 1); }

    // Puts a tools library beside the worker.
    void AddTools(const std::string& library) const { std::filesystem::copy_file(library, PathOf("libZVTools.so")); }

private:
    const std::string m_original = GetWorkerProgram();
};
