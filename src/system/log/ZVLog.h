#pragma once

#include "contracts/ILogManager.h"
#include "core/string/ZVString.h"
#include "system/log/ZVLogCategory.h"

// Where log lines come from: their category and the name that stands in them. Usually a constant of the file that logs:
//
//   constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileSystem::DeleteFile"};
//   Source.Log("Error %d deleting existing file: %s", errno, path);
//
// Every line takes at most 20 arguments, and its format is UTF-8. Without arguments it is a fixed text, in which percent signs
// stand for themselves. The manager formats the line, so a line of a category that is off costs only its arguments.
struct ZVLogSource
{
    uint32_t Category;
    const wchar_t* Name;

    // Logs a line through the manager of the tools library. Without the library, or when it has no manager, nothing is logged and
    // nothing fails.
    template <class... Arguments>
    void Log(const char* format, const Arguments&... arguments) const;

    // Logs a line through the given manager: for the tools library itself, which cannot ask for its own.
    template <class... Arguments>
    void LogTo(ILogManager& manager, const char* format, const Arguments&... arguments) const
    {
        const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
        manager.LogNarrow(Category, Name, format, list.Records(), list.Count());
    }
};

// The way to the log manager of the tools library.
namespace ZVLogManager
{
// The manager, or null.
ILogManager* Find();

// Hands a line to the manager, if there is one. The format is UTF-8 or wide; a null array stands for a fixed text.
void Write(const ZVLogSource& source, const char* format, const ZVFormatRecord* const* arguments, int32_t count);
void Write(const ZVLogSource& source, const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count);
}

template <class... Arguments>
void ZVLogSource::Log(const char* format, const Arguments&... arguments) const
{
    const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
    ZVLogManager::Write(*this, format, list.Records(), list.Count());
}

// Logs one line under a name that is made at run time.
template <class... Arguments>
void ZVLog(uint32_t category, const ZVString& scopeName, const char* format, const Arguments&... arguments)
{
    ZVLogSource {category, scopeName}.Log(format, arguments...);
}
