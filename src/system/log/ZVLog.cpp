#include "system/log/ZVLog.h"

#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"

ILogManager* ZVLogManager::Find()
{
    return g_pZVTools == nullptr ? nullptr : g_pZVTools->GetLogManager(false);
}

void ZVLogManager::Write(const ZVLogSource& source, const char* format, const ZVFormatRecord* const* arguments, int32_t count)
{
    if (ILogManager* manager = Find())
        manager->LogNarrow(source.Category, source.Name, format, arguments, count);
}

void ZVLogManager::Write(const ZVLogSource& source, const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count)
{
    if (ILogManager* manager = Find())
        manager->LogWide(source.Category, source.Name, format, arguments, count);
}
