#pragma once

#include "core/string/ZVString.h"
#include "system/log/ZVLogCategory.h"

class ILogManager;

// The ways to the log manager of the tools library. Without the library, or when it has no manager, nothing is logged and nothing
// fails. The manager formats, so a line of a category that is off costs only its arguments.
namespace ZVLogManager
{
// The manager, or null.
ILogManager* Find();

// Hands a line to the manager, with a wide or a UTF-8 format. A null array stands for a text that is fixed.
void Write(uint32_t category, const wchar_t* scopeName, const wchar_t* format, const ZVFormatRecord* const* arguments,
           int32_t count);
void Write(uint32_t category, const wchar_t* scopeName, const char* format, const ZVFormatRecord* const* arguments,
           int32_t count);
}

// Where log lines come from: their category and the name that stands in them. A constant of the file that logs:
//
//   constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileSystem::DeleteFile"};
//   Source.Log("Error %d deleting existing file: %s", errno, path);
struct ZVLogSource
{
    uint32_t Category;
    const wchar_t* Name;

    // Logs one line, with at most 20 arguments; the format is UTF-8. Without arguments it is a fixed text, which may hold percent
    // signs.
    template <class... Arguments>
    void Log(const char* format, const Arguments&... arguments) const
    {
        const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
        ZVLogManager::Write(Category, Name, format, list.Records(), list.Count());
    }
};

// Logs one line under a name that is made at run time, with at most 20 arguments.
template <class... Arguments>
void ZVLog(uint32_t category, const ZVString& scopeName, const char* format, const Arguments&... arguments)
{
    const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
    ZVLogManager::Write(category, scopeName, format, list.Records(), list.Count());
}
