#include "system/library/ZVFileTypes.h"

#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"

IZVFileTypes* ZVFileTypes::Find()
{
    return g_pZVTools == nullptr ? nullptr : g_pZVTools->GetFileTypes(true);
}

bool ZVFileTypes::IsInClass(const ZVString& fileType, int32_t fileClass)
{
    IZVFileTypes* const fileTypes = Find();
    return fileTypes != nullptr && fileTypes->IsFileTypeInClass(fileType, fileClass);
}
