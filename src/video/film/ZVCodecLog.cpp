#include "video/film/ZVCodecLog.h"

#include "system/log/ZVLog.h"
#include "video/codec/ZVCodecHeaders.h"

#include <cstdio>
#include <cstring>

namespace
{
// The name under which those who read the log know the lines of the libraries.
constexpr ZVLogSource Source {ZVLogCategory::Image, L"CZVVideoAnalyzeExtended::AVLog"};

constexpr int MaximumLength = 2047;

ZVString GetPrefix(void* context)
{
    if (context == nullptr)
        return ZVString();
    const AVClass* avClass = nullptr;
    memcpy(&avClass, context, sizeof avClass);
    if (avClass == nullptr || avClass->item_name == nullptr)
        return ZVString();
    char prefix[256];
    snprintf(prefix, sizeof prefix, "[%s @ %p] ", avClass->item_name(context), context);
    return ZVString::FromUTF8(prefix);
}
}

void ZVCodecLog::Write(void* context, int level, const char* format, va_list arguments)
{
    WriteTo(Source, context, level, format, arguments);
}

void ZVCodecLog::WriteTo(const ZVLogSource& source, void* context, int level, const char* format, va_list arguments)
{
    if (level > AV_LOG_WARNING)
        return;
    char message[MaximumLength + 1];
    if (vsnprintf(message, sizeof message, format, arguments) < 0)
        return;
    const size_t length = strlen(message);
    if (length > 0 && message[length - 1] == '\n')
        message[length - 1] = '\0';
    source.Log("%s%s", GetPrefix(context), message);
}
