#include "siblings/image/ShrinkPixels.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
constexpr size_t ChannelCount = 4;
constexpr size_t AlphaChannel = 3;

// The colours of a pixel times its alpha, and its alpha. So the colour of what cannot be seen does not count.
struct Weighted
{
    float Channel[ChannelCount] = {};
};

// The part of a side of the source that one pixel of the target stands for.
struct Span
{
    Span(int32_t index, int32_t count, int32_t side)
        : Start(static_cast<double>(index) * side / count),
          End(static_cast<double>(index + 1) * side / count),
          First(static_cast<int32_t>(Start)),
          Last(std::min(static_cast<int32_t>(std::ceil(End)), side))
    {
    }

    // How much of a source pixel lies in it, as a share of its length.
    float WeightOf(int32_t pixel) const
    {
        const double share = std::min(End, pixel + 1.0) - std::max(Start, static_cast<double>(pixel));
        return static_cast<float>(std::max(share, 0.0) / (End - Start));
    }

    double Start;
    double End;
    int32_t First;
    int32_t Last;
};

void AddRow(const uint8_t* row, float weight, std::vector<Weighted>& sums)
{
    for (Weighted& sum : sums)
    {
        const float alpha = weight * static_cast<float>(row[AlphaChannel]);
        for (size_t channel = 0; channel < AlphaChannel; ++channel)
            sum.Channel[channel] += alpha * static_cast<float>(row[channel]);
        sum.Channel[AlphaChannel] += alpha;
        row += ChannelCount;
    }
}

void WritePixel(const Weighted& sum, uint8_t* pixel)
{
    const float alpha = sum.Channel[AlphaChannel];
    const auto toByte = [](float value) { return static_cast<uint8_t>(std::clamp(value + 0.5F, 0.0F, 255.0F)); };
    for (size_t channel = 0; channel < AlphaChannel; ++channel)
        pixel[channel] = alpha > 0 ? toByte(sum.Channel[channel] / alpha) : 0;
    pixel[AlphaChannel] = toByte(alpha);
}

void WriteRow(const std::vector<Weighted>& columns, int32_t width, uint8_t* pixel)
{
    for (int32_t x = 0; x < width; ++x, pixel += CPixelView::PixelSize)
    {
        const Span span(x, width, static_cast<int32_t>(columns.size()));
        Weighted sum;
        for (int32_t column = span.First; column < span.Last; ++column)
            for (size_t channel = 0; channel < ChannelCount; ++channel)
                sum.Channel[channel] += span.WeightOf(column) * columns[static_cast<size_t>(column)].Channel[channel];
        WritePixel(sum, pixel);
    }
}
}

ZVImageSize ShrinkPixels::FindFit(const ZVImageSize& size, const ZVImageSize& maximum)
{
    const int64_t width = size.Width;
    const int64_t height = size.Height;
    const int64_t widest = maximum.Width > 0 ? std::min(maximum.Width, size.Width) : size.Width;
    const int64_t highest = maximum.Height > 0 ? std::min(maximum.Height, size.Height) : size.Height;
    const auto scale = [](int64_t side, int64_t part, int64_t whole)
    { return static_cast<int32_t>(std::max<int64_t>(1, (side * part + whole / 2) / whole)); };
    if (height * widest <= width * highest)
        return {static_cast<int32_t>(widest), scale(height, widest, width)};
    return {scale(width, highest, height), static_cast<int32_t>(highest)};
}

CPixels ShrinkPixels::ToSize(const CPixelView& source, const ZVImageSize& size)
{
    CPixels target(size.Width, size.Height);
    std::vector<Weighted> columns(static_cast<size_t>(source.Width));
    for (int32_t y = 0; y < size.Height; ++y)
    {
        const Span span(y, size.Height, source.Height);
        std::fill(columns.begin(), columns.end(), Weighted());
        for (int32_t row = span.First; row < span.Last; ++row)
            AddRow(source.Row(row), span.WeightOf(row), columns);
        WriteRow(columns, size.Width, target.Row(y));
    }
    return target;
}
