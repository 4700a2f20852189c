#include "system/library/ZVImages.h"

#include "system/library/ZVSiblingLibraries.h"

ZVImagePointer ZVImages::Create()
{
    auto* const library = ZVSiblingLibraries::Get().LoadInterface<IZVImageLibrary>(ZVSibling::Image);
    return ZVImagePointer(library == nullptr ? nullptr : library->CreateImage());
}
