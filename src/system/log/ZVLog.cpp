#include "system/log/ZVLog.h"

#include "contracts/ILogManager.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"

ILogManager* ZVLogManager::Find()
{
    return g_pZVTools == nullptr ? nullptr : g_pZVTools->GetLogManager(false);
}

void ZVLogManager::Write(uint32_t category, const wchar_t* scopeName, const wchar_t* format,
                         const ZVFormatRecord* const* arguments, int32_t count)
{
    if (ILogManager* manager = Find())
        manager->LogWide(category, scopeName, format, arguments, count);
}

void ZVLogManager::Write(uint32_t category, const wchar_t* scopeName, const char* format, const ZVFormatRecord* const* arguments,
                         int32_t count)
{
    if (ILogManager* manager = Find())
        manager->LogNarrow(category, scopeName, format, arguments, count);
}
