#pragma once

#include "contracts/IZVImage.h"
#include "contracts/ZVReleasePointer.h"
#include "siblings/image/CPixels.h"

// A picture. Its pixels are another's until an operation changes them, and then its own.
class CImage final : public ZVReleasable<IZVImage>
{
public:
    bool SetFromPixels(const void* pixels, int32_t width, int32_t height, int32_t stride, int32_t reserved) override;
    bool CopyFrom(const IZVImage& other) override;
    bool IsBlank(int32_t reserved) override;
    bool Rotate(int32_t degrees, int32_t reserved1, int32_t reserved2) override;
    bool SetAlphaFill(int32_t alpha, int32_t reserved1, int32_t reserved2) override;
    bool Save(const wchar_t* path) override;
    void SetKind(int32_t) override {}
    bool Load(const wchar_t* path, const ZVImageSize& maximumSize, int32_t reserved1, int32_t reserved2, int32_t reserved3,
              int32_t reserved4, int32_t reserved5, int32_t reserved6, int32_t reserved7) override;
    int32_t GetWidth() const override { return m_view.Width; }
    int32_t GetHeight() const override { return m_view.Height; }
    const void* GetPixels() const override { return m_view.First; }
    int32_t GetStride() const override { return m_view.Stride; }

private:
    bool HasPixels() const { return m_view.First != nullptr; }
    bool Take(CPixels&& pixels);

    CPixels m_own;
    // What the picture shows: m_own, or the pixels of another, while m_own is empty.
    CPixelView m_view;
};
