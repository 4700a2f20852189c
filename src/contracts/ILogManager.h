#pragma once

#include "contracts/ZVFormatRecord.h"

#include <cstdint>

// Receives a copy of each log line of the process, in all categories whatever the mask says, on the thread that logged it. There
// is only one call at a time. During a call outputs may be added and removed, including this one; a line that is logged during a
// call only goes to the file.
class ILogManagerCustomOutput
{
public:
    // Receives the text of one line, without time stamp, scope and line end. text is not NUL-terminated and valid until the call
    // returns.
    virtual void Output(uint32_t category, const wchar_t* text, int32_t length) = 0;
    virtual ~ILogManagerCustomOutput() = default;
};

// The log manager: it decides what is written, where, and in what line format. May be called from any thread. A category is a
// single bit. A failure of the log never reaches its callers: nothing throws, errno does not change, and nothing waits for a full
// disk.
class ILogManager
{
public:
    // Sets the mask of the categories that are written to the file, for this process.
    virtual void SetCategoryMask(uint32_t mask) = 0;
    // Returns the mask of the categories that are written.
    virtual uint32_t GetCategoryMask() = 0;
    // Writes one line. arguments is an array of argumentCount pointers. Without arguments, null and 0, format is the text of the
    // line and is not interpreted.
    virtual void LogWide(uint32_t category, const wchar_t* scopeName, const wchar_t* format,
                         const ZVFormatRecord* const* arguments, int32_t argumentCount) = 0;
    // The same with a UTF-8 format.
    virtual void LogNarrow(uint32_t category, const wchar_t* scopeName, const char* format,
                           const ZVFormatRecord* const* arguments, int32_t argumentCount) = 0;
    // Passes what is buffered to the system.
    virtual void Flush() = 0;
    // The path of the log file, empty if there is none; valid as long as the manager.
    virtual const wchar_t* GetFilePath() = 0;
    // Adds a receiver of all lines. It still belongs to the caller, who must remove it before destroying it.
    virtual void AddCustomOutput(ILogManagerCustomOutput* item) = 0;
    // Removes a receiver; one that is not there is ignored. After this returns the receiver is not called any more.
    virtual void RemoveCustomOutput(ILogManagerCustomOutput* item) = 0;

protected:
    ~ILogManager() = default;
};
