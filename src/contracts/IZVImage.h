#pragma once

#include "contracts/IZVSiblingInterface.h"

#include <cstdint>

// A size in pixels.
struct ZVImageSize
{
    int32_t Width = 0;
    int32_t Height = 0;
};

// A picture of 32-bit pixels: B, G, R and alpha in memory, rows from the top. A new one has no pixels, and an operation that needs
// some does nothing then and is false. An operation that fails leaves the picture as it was. Belongs to one thread; nothing throws.
class IZVImage
{
public:
    // The kind of a picture that belongs to a film: a cover.
    static constexpr int32_t KindCover = 4;

    // Has the picture show pixels that stay with their owner, who keeps them as long as the picture shows them: an operation that
    // changes pixels makes a copy first. stride is the distance of two rows in bytes, negative when the rows go up in memory.
    // False for a size that no picture has, and for a stride shorter than a row.
    virtual bool SetFromPixels(const void* pixels, int32_t width, int32_t height, int32_t stride, int32_t reserved) = 0;
    // Makes this picture a copy of another one, with pixels of its own.
    virtual bool CopyFrom(const IZVImage& other) = 0;
    // True for a picture on which there is nothing to see: one colour, a fade, fog, noise. Also true without pixels. reserved
    // is -1.
    virtual bool IsBlank(int32_t reserved) = 0;
    // Turns the picture clockwise by a multiple of 90 degrees, which may be negative. False for any other angle. The reserved
    // arguments are 100 and 0.
    virtual bool Rotate(int32_t degrees, int32_t reserved1, int32_t reserved2) = 0;
    // Gives all pixels one alpha, 0 to 255; 255 is opaque. The reserved arguments are 0.
    virtual bool SetAlphaFill(int32_t alpha, int32_t reserved1, int32_t reserved2) = 0;
    // Writes the picture to a file, in the format of the path's extension, in any case: png, jpg, jpeg, webp and bmp; false for
    // another. The file is whole or as it was before. The reason of a failure is logged.
    virtual bool Save(const wchar_t* path) = 0;
    // What the picture is for; see KindCover. It changes nothing of how a picture is read.
    virtual void SetKind(int32_t kind) = 0;
    // Reads a picture file, whose content tells the format: PNG, JPEG, WebP or BMP. A picture that is larger than maximumSize is
    // made smaller, so that it just fits; a side of 0 or less does not count. False, with the reason in the log, for a file that
    // is no picture or has more than 100 million pixels. The reserved arguments are 1, -1, 0, 0, 0, 1 and 0.
    virtual bool Load(const wchar_t* path, const ZVImageSize& maximumSize, int32_t reserved1, int32_t reserved2,
                      int32_t reserved3, int32_t reserved4, int32_t reserved5, int32_t reserved6, int32_t reserved7) = 0;
    // The size in pixels; 0 without pixels.
    virtual int32_t GetWidth() const = 0;
    virtual int32_t GetHeight() const = 0;
    // The first pixel of the first row, and the distance of two rows in bytes. Valid until the picture changes; null and 0 without
    // pixels.
    virtual const void* GetPixels() const = 0;
    virtual int32_t GetStride() const = 0;
    // Frees the picture.
    virtual void Release() = 0;

protected:
    ~IZVImage() = default;
};

// The image library as its callers see it. May be called from any thread.
class IZVImageLibrary : public IZVSiblingInterface
{
public:
    // Makes a picture without pixels. Null if there is no memory.
    virtual IZVImage* CreateImage() = 0;

protected:
    ~IZVImageLibrary() = default;
};
