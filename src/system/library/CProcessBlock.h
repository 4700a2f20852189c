#pragma once

#include "core/string/ZVString.h"

#include <cstddef>
#include <cstdint>
#include <sys/types.h>

// What is in the block of memory that the program and its libraries share: plain data, since each of them has its own copy of the
// code. The size and the two ends of the block are fixed. Only the pages that hold something are ever touched.
struct CProcessBlock
{
    static constexpr int32_t ProductVersion = 33;
    static constexpr size_t Size = 83032;
    // Characters of a path with its terminator, as many as the system takes bytes.
    static constexpr size_t PathCapacity = 4096;

    enum class Content : uint8_t
    {
        New = 0,
        Filled = 1,
    };

    Content State;   // set last by the creator
    bool IsStarted;  // the program has begun to start up
    uint8_t Reserved[2];
    int32_t ProcessId;
    int64_t CreationTime;               // nanoseconds since the machine started
    wchar_t InstallPath[PathCapacity];  // both paths end in "/"
    wchar_t ApplicationDataPath[PathCapacity];
    uint8_t Unused[50244];
    int32_t AttachCounter;  // the number of the last load; only changed atomically

    // The name of a process's block.
    static ZVString GetName(pid_t processId);
    // The process of a name that GetName gives, or 0 for any other name.
    static pid_t GetProcessOfName(const char* name);
};

static_assert(sizeof(CProcessBlock) == CProcessBlock::Size);
static_assert(offsetof(CProcessBlock, AttachCounter) == CProcessBlock::Size - sizeof(int32_t));
