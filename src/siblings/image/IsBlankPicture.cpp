#include "siblings/image/IsBlankPicture.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace
{
constexpr int32_t MaximumColumns = 160;
constexpr int32_t MaximumRows = 90;

// As many rows of a cell are looked at, or twice as many less one: more tell nothing new of its mean.
constexpr int32_t SampledRows = 12;

// A cell that is farther than this from the picture's own colour shows something.
constexpr int32_t MaximumDistance = 16;

// A picture with fewer cells that show something than one of this many is blank. Noise and fades have none, the smallest titles
// and the darkest scenes 3 of 1000.
constexpr size_t CellsForEachSeen = 1000;

constexpr int32_t ChannelCount = 3;

struct Sums
{
    uint64_t Channel[ChannelCount] = {};
};

// Adds a run of pixels. Two pixels at a time are added as numbers of 16 bits that lie beside each other in one of 64, which hold
// the sums of 256 such pairs before they would run over.
void AddPixels(const uint8_t* pixels, int32_t count, Sums& sums)
{
    constexpr int32_t maximumPairs = 256;
    constexpr uint64_t evenBytes = 0x00ff00ff00ff00ff;
    while (count > 1)
    {
        const int32_t pairs = std::min(count / 2, maximumPairs);
        uint64_t even = 0;
        uint64_t odd = 0;
        for (int32_t pair = 0; pair < pairs; ++pair, pixels += sizeof(uint64_t))
        {
            uint64_t two;
            memcpy(&two, pixels, sizeof two);
            even += two & evenBytes;
            odd += two >> 8 & evenBytes;
        }
        sums.Channel[0] += (even & 0xffff) + (even >> 32 & 0xffff);
        sums.Channel[1] += (odd & 0xffff) + (odd >> 32 & 0xffff);
        sums.Channel[2] += (even >> 16 & 0xffff) + (even >> 48);
        count -= 2 * pairs;
    }
    if (count == 1)
        for (int32_t channel = 0; channel < ChannelCount; ++channel)
            sums.Channel[channel] += pixels[channel];
}

using Colour = std::array<uint8_t, ChannelCount>;

// The mean colours of all cells.
class Grid
{
public:
    explicit Grid(const CPixelView& picture)
        : m_picture(picture),
          m_columns(std::min(MaximumColumns, picture.Width)),
          m_rows(std::min(MaximumRows, picture.Height)),
          m_sums(static_cast<size_t>(m_columns))
    {
        m_cells.reserve(m_sums.size() * static_cast<size_t>(m_rows));
        for (int32_t row = 0; row < m_rows; ++row)
            AddRow(row);
    }

    const std::vector<Colour>& GetCells() const { return m_cells; }

private:
    // The first pixel of a cell among that many, which divide a side of the picture.
    static int32_t StartOf(int32_t cell, int32_t cells, int32_t side)
    {
        return static_cast<int32_t>(int64_t {cell} * side / cells);
    }

    void AddRow(int32_t row)
    {
        const int32_t top = StartOf(row, m_rows, m_picture.Height);
        const int32_t bottom = StartOf(row + 1, m_rows, m_picture.Height);
        const int32_t step = std::max(1, (bottom - top) / SampledRows);
        std::fill(m_sums.begin(), m_sums.end(), Sums());
        for (int32_t y = top; y < bottom; y += step)
            for (int32_t column = 0; column < m_columns; ++column)
            {
                const int32_t left = StartOf(column, m_columns, m_picture.Width);
                const int32_t right = StartOf(column + 1, m_columns, m_picture.Width);
                AddPixels(m_picture.Row(y) + static_cast<ptrdiff_t>(left) * CPixelView::PixelSize, right - left,
                          m_sums[static_cast<size_t>(column)]);
            }
        const int32_t sampledRows = (bottom - top + step - 1) / step;
        for (int32_t column = 0; column < m_columns; ++column)
            AddCell(m_sums[static_cast<size_t>(column)],
                    static_cast<uint64_t>(sampledRows) * static_cast<uint64_t>(StartOf(column + 1, m_columns, m_picture.Width) -
                                                                               StartOf(column, m_columns, m_picture.Width)));
    }

    void AddCell(const Sums& sums, uint64_t pixels)
    {
        Colour colour;
        for (size_t channel = 0; channel < colour.size(); ++channel)
            colour[channel] = static_cast<uint8_t>((sums.Channel[channel] + pixels / 2) / pixels);
        m_cells.push_back(colour);
    }

    const CPixelView& m_picture;
    int32_t m_columns;
    int32_t m_rows;
    std::vector<Sums> m_sums;
    std::vector<Colour> m_cells;
};

// The value that half of the cells do not exceed.
uint8_t FindMedian(const std::vector<Colour>& cells, size_t channel)
{
    std::array<size_t, 256> counts {};
    for (const Colour& cell : cells)
        ++counts[cell[channel]];
    size_t value = 0;
    for (size_t below = counts[0]; below * 2 < cells.size(); below += counts[value])
        ++value;
    return static_cast<uint8_t>(value);
}
}

bool IsBlankPicture(const CPixelView& picture)
{
    const Grid grid(picture);
    Colour median;
    for (size_t channel = 0; channel < median.size(); ++channel)
        median[channel] = FindMedian(grid.GetCells(), channel);

    size_t seen = 0;
    for (const Colour& cell : grid.GetCells())
    {
        int32_t distance = 0;
        for (size_t channel = 0; channel < cell.size(); ++channel)
            distance = std::max(distance, std::abs(cell[channel] - median[channel]));
        seen += distance > MaximumDistance ? 1 : 0;
    }
    return seen * CellsForEachSeen < grid.GetCells().size();
}
