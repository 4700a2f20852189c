#pragma once

#include "core/string/ZVString.h"

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

// Logs one line under a scope name without a scope object, with at most 20 arguments.
template <class... Arguments>
void ZVLog(uint32_t category, const ZVString& scopeName, const char* format, const Arguments&... arguments)
{
    const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
    ZVLogManager::Write(category, scopeName, format, list.Records(), list.Count());
}
