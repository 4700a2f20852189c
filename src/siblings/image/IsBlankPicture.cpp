#include "siblings/image/IsBlankPicture.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace
{
constexpr int32_t MaximumColumns = 160;
constexpr int32_t MaximumRows = 90;

// As many rows of a cell are looked at, or twice as many less one: more tell nothing new of its mean.
constexpr int32_t SampledRows = 6;

// A cell that is farther than this from the picture's own colour shows something.
constexpr int32_t MaximumDistance = 16;

// A picture with fewer cells that show something than one of this many is blank. Noise and fades have none, the smallest titles
// and the darkest scenes 3 of 1000.
constexpr size_t CellsForEachSeen = 1000;

using Colour = std::array<uint8_t, 3>;

// The sums of the channels of many pixels. Two pixels at a time are added, as numbers of 16 bits that lie beside each other in one
// of 64.
class ChannelSums
{
public:
    void Add(const uint8_t* pixels, int32_t count)
    {
        m_pixels += static_cast<uint64_t>(count);
        while (count > 1)
        {
            const int32_t pairs = std::min(count / 2, MaximumPairs - m_pairs);
            AddPairs(pixels, pairs);
            pixels += pairs * static_cast<ptrdiff_t>(sizeof(uint64_t));
            count -= 2 * pairs;
        }
        if (count == 1)
            for (size_t channel = 0; channel < m_sums.size(); ++channel)
                m_sums[channel] += pixels[channel];
    }

    Colour GetMean()
    {
        Carry();
        Colour mean;
        for (size_t channel = 0; channel < mean.size(); ++channel)
            mean[channel] = static_cast<uint8_t>((m_sums[channel] + m_pixels / 2) / m_pixels);
        return mean;
    }

private:
    static constexpr uint64_t EvenBytes = 0x00ff00ff00ff00ff;
    // More could run over.
    static constexpr int32_t MaximumPairs = 256;

    void AddPairs(const uint8_t* pixels, int32_t pairs)
    {
        // Local, since bytes could lie anywhere for the compiler, also in this object.
        uint64_t even = m_even;
        uint64_t odd = m_odd;
        for (int32_t pair = 0; pair < pairs; ++pair, pixels += sizeof(uint64_t))
        {
            uint64_t two;
            memcpy(&two, pixels, sizeof two);
            even += two & EvenBytes;
            odd += two >> 8 & EvenBytes;
        }
        m_even = even;
        m_odd = odd;
        m_pairs += pairs;
        if (m_pairs == MaximumPairs)
            Carry();
    }

    void Carry()
    {
        m_sums[0] += (m_even & 0xffff) + (m_even >> 32 & 0xffff);
        m_sums[1] += (m_odd & 0xffff) + (m_odd >> 32 & 0xffff);
        m_sums[2] += (m_even >> 16 & 0xffff) + (m_even >> 48);
        m_even = 0;
        m_odd = 0;
        m_pairs = 0;
    }

    uint64_t m_even = 0;
    uint64_t m_odd = 0;
    int32_t m_pairs = 0;
    std::array<uint64_t, std::tuple_size_v<Colour>> m_sums {};
    uint64_t m_pixels = 0;
};

// The part of a side of the picture that a cell takes, one of that many.
struct Span
{
    Span(int32_t cell, int32_t cells, int32_t side)
        : Start(static_cast<int32_t>(int64_t {cell} * side / cells)),
          End(static_cast<int32_t>((int64_t {cell} + 1) * side / cells))
    {
    }

    int32_t Start;
    int32_t End;
};

Colour GetMean(const CPixelView& picture, const Span& columns, const Span& rows)
{
    const int32_t step = std::max(1, (rows.End - rows.Start) / SampledRows);
    ChannelSums sums;
    for (int32_t y = rows.Start; y < rows.End; y += step)
        sums.Add(picture.Row(y) + static_cast<ptrdiff_t>(columns.Start) * CPixelView::PixelSize, columns.End - columns.Start);
    return sums.GetMean();
}

// The mean colours of all cells.
std::vector<Colour> GetCells(const CPixelView& picture)
{
    const int32_t columns = std::min(MaximumColumns, picture.Width);
    const int32_t rows = std::min(MaximumRows, picture.Height);
    std::vector<Colour> cells;
    cells.reserve(static_cast<size_t>(columns) * static_cast<size_t>(rows));
    for (int32_t row = 0; row < rows; ++row)
        for (int32_t column = 0; column < columns; ++column)
            cells.push_back(GetMean(picture, {column, columns, picture.Width}, {row, rows, picture.Height}));
    return cells;
}

// The value that half of the cells do not exceed in a channel.
uint8_t GetMedian(const std::vector<Colour>& cells, size_t channel)
{
    std::array<size_t, 256> counts {};
    for (const Colour& cell : cells)
        ++counts[cell[channel]];
    uint8_t value = 0;
    for (size_t upTo = counts[0]; upTo * 2 < cells.size(); upTo += counts[value])
        ++value;
    return value;
}

bool AreFarApart(const Colour& a, const Colour& b)
{
    for (size_t channel = 0; channel < a.size(); ++channel)
        if (std::abs(a[channel] - b[channel]) > MaximumDistance)
            return true;
    return false;
}
}

bool IsBlankPicture(const CPixelView& picture)
{
    const std::vector<Colour> cells = GetCells(picture);
    const Colour ground = {GetMedian(cells, 0), GetMedian(cells, 1), GetMedian(cells, 2)};
    const auto seen = std::ranges::count_if(cells, [&ground](const Colour& cell) { return AreFarApart(cell, ground); });
    return static_cast<size_t>(seen) * CellsForEachSeen < cells.size();
}
