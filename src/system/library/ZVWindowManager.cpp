#include "system/library/ZVWindowManager.h"

#include "system/library/ZVSiblingLibraries.h"

namespace
{
IZVWMFactory* GetLibrary()
{
    return ZVSiblingLibraries::Get().LoadInterface<IZVWMFactory>(ZVSibling::WMFactory);
}
}

_XDisplay* ZVWindowManager::GetDisplay()
{
    IZVWMFactory* const library = GetLibrary();
    return library == nullptr ? nullptr : library->GetDisplay();
}

ZVRect ZVWindowManager::ConvertRect(const ZVRect& rect, int32_t mode)
{
    const IZVWMFactory* const library = GetLibrary();
    if (library == nullptr)
        return rect;
    const ZVScreenRect converted = library->ConvertRect({rect.Left, rect.Top, rect.Right, rect.Bottom}, mode);
    return {converted.Left, converted.Top, converted.Right, converted.Bottom};
}
