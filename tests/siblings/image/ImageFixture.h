#pragma once

#include "FakeTools.h"
#include "contracts/ZVReleasePointer.h"
#include "core/ZVToolsPointer.h"
#include "siblings/image/CImageLibrary.h"
#include "siblings/tools/ToolsFolder.h"

#include <gmock/gmock.h>

#include <array>
#include <cstring>

using ImagePointer = ZVReleasePointer<IZVImage>;
using Pixel = std::array<uint8_t, 4>;

// A picture in memory, of which a test knows every pixel.
struct Frame
{
    int32_t Width = 0;
    int32_t Height = 0;
    std::vector<Pixel> Pixels {};

    template <class Function>
    static Frame Make(int32_t width, int32_t height, Function function)
    {
        Frame frame {width, height};
        for (int32_t y = 0; y < height; ++y)
            for (int32_t x = 0; x < width; ++x)
                frame.Pixels.push_back(function(x, y));
        return frame;
    }
    // A smooth one that is different in every corner and side.
    static Frame MakeSmooth(int32_t width, int32_t height, uint8_t alpha = 255)
    {
        return Make(width, height,
                    [=](int32_t x, int32_t y)
                    {
                        return Pixel {static_cast<uint8_t>(x * 250 / width), static_cast<uint8_t>(y * 250 / height),
                                      static_cast<uint8_t>(255 - (x + y) * 250 / (width + height)), alpha};
                    });
    }
    static Frame MakeOfBytes(int32_t width, int32_t height, const std::string& bytes)
    {
        Frame frame {width, height, std::vector<Pixel>(static_cast<size_t>(width) * static_cast<size_t>(height))};
        EXPECT_EQ(bytes.size(), frame.Pixels.size() * sizeof(Pixel));
        memcpy(frame.Pixels.data(), bytes.data(), std::min(bytes.size(), frame.Pixels.size() * sizeof(Pixel)));
        return frame;
    }
    static Frame MakeOf(const IZVImage& image)
    {
        return Make(image.GetWidth(), image.GetHeight(),
                    [&](int32_t x, int32_t y)
                    {
                        Pixel pixel;
                        const auto* first = static_cast<const uint8_t*>(image.GetPixels());
                        memcpy(pixel.data(), first + static_cast<ptrdiff_t>(y) * image.GetStride() + x * 4, pixel.size());
                        return pixel;
                    });
    }

    bool Show(IZVImage& image) const { return image.SetFromPixels(Pixels.data(), Width, Height, Width * 4, 0); }
    Pixel At(int32_t x, int32_t y) const
    {
        return Pixels[static_cast<size_t>(y) * static_cast<size_t>(Width) + static_cast<size_t>(x)];
    }
    bool operator==(const Frame&) const = default;

    // The mean distance of two frames of one size in any channel; 256 for other frames.
    double DistanceTo(const Frame& other) const
    {
        if (Width != other.Width || Height != other.Height)
            return 256;
        double sum = 0;
        for (size_t index = 0; index < Pixels.size(); ++index)
            for (size_t channel = 0; channel < 4; ++channel)
                sum += std::abs(Pixels[index][channel] - other.Pixels[index][channel]);
        return sum / static_cast<double>(Pixels.size() * 4);
    }
};

// A test with a folder and the log lines that it causes.
class ImageTest : public testing::Test
{
protected:
    ImageTest() { g_pZVTools = &m_tools; }
    ~ImageTest() override { g_pZVTools = nullptr; }

    ImagePointer Create() { return ImagePointer(m_library.CreateImage()); }
    ZVString At(const std::string& name) const { return ZVString::FromUTF8(m_folder.PathOf(name).c_str()); }
    bool Save(const Frame& frame, const std::string& name)
    {
        const ImagePointer image = Create();
        return frame.Show(*image) && image->Save(At(name));
    }
    bool LoadInto(IZVImage& image, const std::string& name, const ZVImageSize& maximum = {})
    {
        return image.Load(At(name), maximum, 1, -1, 0, 0, 0, 1, 0);
    }
    // The picture of a file; empty if it cannot be read.
    Frame Load(const std::string& name, const ZVImageSize& maximum = {})
    {
        const ImagePointer image = Create();
        return LoadInto(*image, name, maximum) ? Frame::MakeOf(*image) : Frame();
    }
    std::string TakeLog()
    {
        std::string log;
        for (const std::string& line : m_tools.Manager.Lines)
            log += line + "\n";
        m_tools.Manager.Lines.clear();
        return log;
    }

    CImageLibrary m_library;
    FakeTools m_tools;
    ToolsFolder m_folder;
};
