#include "caller/picture/CPicture.h"

#include "caller/picture/CPictureLibrary.h"

#include <algorithm>
#include <array>
#include <strings.h>

namespace
{
// Of 100. Small pictures show no loss then.
constexpr int Quality = 80;

// Of 9. Beyond this, PNG files take much longer and are little smaller.
constexpr int PNGLevel = 6;

// One of the functions that make an image of the bytes of a file.
using ReadFunction = gdImage* (*CPictureLibrary::*)(int size, void* bytes);
using WriteFunction = void* (*)(gdImage* image, int* size);

// A format that pictures are read from, and its signature; "?" stands for any byte. Those without an extension are not written.
struct PictureFormat
{
    std::string_view Signature;
    ReadFunction Read;
    std::array<const char*, 2> Extensions;
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

// The formats of the pictures that the worker makes, and of covers.
constexpr PictureFormat PictureFormats[] = {
    {"\xff\xd8\xff", &CPictureLibrary::gdImageCreateFromJpegPtr, {".jpg", ".jpeg"}, WriteJPEG},
    {"\x89PNG",      &CPictureLibrary::gdImageCreateFromPngPtr,  {".png"},          WritePNG },
    {"RIFF????WEBP", &CPictureLibrary::gdImageCreateFromWebpPtr, {".webp"},         WriteWebP},
    {"BM",           &CPictureLibrary::gdImageCreateFromBmpPtr,  {},                nullptr  },
    {"GIF8",         &CPictureLibrary::gdImageCreateFromGifPtr,  {},                nullptr  },
};

const PictureFormat* FindFormat(const std::string& extension)
{
    for (const PictureFormat& format : PictureFormats)
        for (const char* const name : format.Extensions)
            if (name != nullptr && strcasecmp(name, extension.c_str()) == 0)
                return &format;
    return nullptr;
}

const PictureFormat* FindFormatOf(std::string_view bytes)
{
    for (const PictureFormat& format : PictureFormats)
        if (std::ranges::equal(format.Signature, bytes.substr(0, format.Signature.size()),
                               [](char wanted, char found) { return wanted == '?' || wanted == found; }))
            return &format;
    return nullptr;
}

// The library looks at the bytes alone.
gdImage* Read(std::string_view bytes)
{
    const PictureFormat* const format = FindFormatOf(bytes);
    if (format == nullptr || bytes.size() > MaximumPictureSize)
        return nullptr;
    return (CPictureLibrary::Get().*format->Read)(static_cast<int>(bytes.size()), const_cast<char*>(bytes.data()));
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

CPicture::CPicture(std::string_view bytes) : m_image(Read(bytes)) {}

std::string CPicture::Make(int size, const std::string& extension) const
{
    const PictureFormat* const format = FindFormat(extension);
    if (m_image == nullptr || format == nullptr)
        return {};
    const int64_t longer = std::max(gdImageSX(m_image), gdImageSY(m_image));
    if (size <= 0 || longer <= size)
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

bool HasFormat(std::string_view bytes, const std::string& extension)
{
    const PictureFormat* const format = FindFormat(extension);
    return format != nullptr && format == FindFormatOf(bytes);
}
