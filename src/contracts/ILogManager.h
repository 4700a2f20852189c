#pragma once

#include "contracts/ZVFormatRecord.h"

#include <cstdint>

// Receives a copy of each log line of the process, of all categories whatever the mask says, on the thread that logged it. One
// call comes at a time. During it outputs may be added and removed, this one too; a line logged then goes to the file alone.
class ILogManagerCustomOutput
{
public:
    // The text of one line, without time stamp, scope and line end; text is not NUL-terminated and lives until the call returns.
    virtual void Output(uint32_t category, const wchar_t* text, int32_t length) = 0;
    virtual ~ILogManagerCustomOutput() = default;
};

// The log manager: it decides what is written, where, and in what line format. May be called from any thread. A category is a
// single bit. No failure of the log reaches its callers: no exception comes out, errno stays as it was, and nothing waits for a
// disk that is full.
class ILogManager
{
public:
    // Sets the mask of the categories that are written to the file, for this process.
    virtual void SetCategoryMask(uint32_t mask) = 0;
    // Tells the mask of the categories that are written.
    virtual uint32_t GetCategoryMask() = 0;
    // Writes one line. arguments is an array of argumentCount pointers, or null and 0; then format is the text of the line as it
    // stands.
    virtual void LogWide(uint32_t category, const wchar_t* scopeName, const wchar_t* format,
                         const ZVFormatRecord* const* arguments, int32_t argumentCount) = 0;
    // The same with a UTF-8 format.
    virtual void LogNarrow(uint32_t category, const wchar_t* scopeName, const char* format,
                           const ZVFormatRecord* const* arguments, int32_t argumentCount) = 0;
    // Hands what is buffered to the system.
    virtual void Flush() = 0;
    // The path of the file that the lines go to, empty when there is none; it stays valid as long as the manager.
    virtual const wchar_t* GetFilePath() = 0;
    // Adds a receiver of all lines. The caller keeps the ownership and removes it before it dies.
    virtual void AddCustomOutput(ILogManagerCustomOutput* item) = 0;
    // Removes a receiver; one that is not there is ignored. Once this returns the receiver is not called any more.
    virtual void RemoveCustomOutput(ILogManagerCustomOutput* item) = 0;

protected:
    ~ILogManager() = default;
};
