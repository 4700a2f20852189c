#include "siblings/image/CImageLibrary.h"

#include "siblings/image/CImage.h"
#include "system/library/ZVToolsBinding.h"

#include <new>

void CImageLibrary::Initialize(int32_t)
{
    ZVToolsBinding::Bind();
}

IZVImage* CImageLibrary::CreateImage()
{
    return new (std::nothrow) CImage();
}
