#pragma once

#include "core/string/ZVString.h"

#include <cstddef>
#include <cstdint>
#include <sys/types.h>

// The content of the block of memory that the program and its libraries share: plain data, because each of them has its own copy
// of the code. The size of the block and its first and last fields are fixed. Only pages that hold something are ever touched.
struct CProcessBlock
{
    static constexpr int32_t ProductVersion = 33;
    static constexpr size_t Size = 83032;
    // Characters of a path with its terminator; the system takes no more bytes.
    static constexpr size_t PathCapacity = 4096;

    enum class Content : uint8_t
    {
        New = 0,
        Filled = 1,
    };

    Content State;   // set last by whoever made the block
    bool IsStarted;  // the program has begun its start-up
    uint8_t Reserved[2];
    int32_t ProcessId;
    int64_t CreationTime;               // nanoseconds since the machine started
    wchar_t InstallPath[PathCapacity];  // both paths end in "/"
    wchar_t ApplicationDataPath[PathCapacity];
    uint8_t Unused[50244];
    int32_t AttachCounter;  // the number of the last library load; changed only atomically

    // The name of a process's block.
    static ZVString GetName(pid_t processId);
    // The process that a name of GetName belongs to; 0 for any other name.
    static pid_t GetProcessOfName(const char* name);
};

static_assert(sizeof(CProcessBlock) == CProcessBlock::Size);
static_assert(offsetof(CProcessBlock, AttachCounter) == CProcessBlock::Size - sizeof(int32_t));
