#include "caller/picture/CPicture.h"

#include "caller/picture/CPictureLibrary.h"

#include <algorithm>
#include <strings.h>

namespace
{
// Of 100. Small pictures show no loss then.
constexpr int Quality = 80;

// Of 9. Beyond this, PNG files take much longer and are little smaller.
constexpr int PNGLevel = 6;

using WriteFunction = void* (*)(gdImage* image, int* size);

struct PictureFormat
{
    const char* Extension;
    WriteFunction Write;
};

void* WriteJPEG(gdImage* image, int* size)
{
    return CPictureLibrary::Get().gdImageJpegPtr(image, size, Quality);
}

void* WritePNG(gdImage* image, int* size)
{
    return CPictureLibrary::Get().gdImagePngPtrEx(image, size, PNGLevel);
}

void* WriteWebP(gdImage* image, int* size)
{
    return CPictureLibrary::Get().gdImageWebpPtrEx(image, size, Quality);
}

constexpr PictureFormat PictureFormats[] = {
    {".jpg",  WriteJPEG},
    {".jpeg", WriteJPEG},
    {".png",  WritePNG },
    {".webp", WriteWebP},
};

const PictureFormat* FindFormat(const std::string& extension)
{
    const auto* const found = std::ranges::find_if(PictureFormats, [&](const PictureFormat& format)
                                                   { return strcasecmp(format.Extension, extension.c_str()) == 0; });
    return found == std::end(PictureFormats) ? nullptr : found;
}

std::string Write(gdImage* image, const PictureFormat& format)
{
    const auto& library = CPictureLibrary::Get();
    int size = 0;
    const std::unique_ptr<void, decltype(library.gdFree)> bytes(format.Write(image, &size), library.gdFree);
    return bytes == nullptr ? std::string() : std::string(static_cast<const char*>(bytes.get()), static_cast<size_t>(size));
}
}

void CPicture::Destroy::operator()(gdImage* image) const
{
    CPictureLibrary::Get().gdImageDestroy(image);
}

CPicture::CPicture(const std::filesystem::path& file) : m_image(CPictureLibrary::Get().gdImageCreateFromFile(file.c_str())) {}

std::string CPicture::MakeSmaller(int size, const std::string& extension) const
{
    const PictureFormat* const format = FindFormat(extension);
    if (m_image == nullptr || format == nullptr || size <= 0)
        return {};
    const int64_t longer = std::max(gdImageSX(m_image), gdImageSY(m_image));
    if (longer <= size)
        return Write(m_image.get(), *format);
    const auto shrink = [&](int side)
    { return static_cast<unsigned>(std::max<int64_t>(1, (side * int64_t {size} + longer / 2) / longer)); };
    const Image smaller(
        CPictureLibrary::Get().gdImageScale(m_image.get(), shrink(gdImageSX(m_image)), shrink(gdImageSY(m_image))));
    return smaller == nullptr ? std::string() : Write(smaller.get(), *format);
}

bool IsPictureExtension(const std::string& extension)
{
    return FindFormat(extension) != nullptr;
}
