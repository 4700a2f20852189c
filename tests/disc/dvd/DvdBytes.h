#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The information file of a title set, laid out as a disc has it.
namespace DvdBytes
{
struct Cell
{
    uint8_t Category;
    std::string Time;  // four bytes
};

struct Chain
{
    std::string Time;           // four bytes
    std::string Programs = {};  // the first cell of each
    std::vector<Cell> Cells = {};
};

inline std::string Number(uint64_t value, size_t width)
{
    std::string bytes;
    for (size_t index = width; index-- > 0;)
        bytes.push_back(static_cast<char>(value >> 8 * index));
    return bytes;
}

inline std::string Make(const Chain& chain)
{
    std::string bytes = Number(0, 2) + Number(chain.Programs.size(), 1) + Number(chain.Cells.size(), 1) + chain.Time;
    bytes.resize(0xe6);
    bytes += Number(0xec, 2) + Number(0xec + chain.Programs.size(), 2);
    bytes.resize(0xec);
    bytes += chain.Programs;
    for (const Cell& cell : chain.Cells)
    {
        bytes += Number(cell.Category, 1) + Number(0, 3) + cell.Time;
        bytes.resize(bytes.size() + 16);
    }
    return bytes;
}

// The table of chains is in the third sector.
inline std::string File(const std::vector<Chain>& chains)
{
    std::string file = "DVDVIDEO-VTS";
    file.resize(0xcc);
    file += Number(2, 4);
    file.resize(2 * 2048);
    std::string bodies;
    std::string entries;
    for (const Chain& chain : chains)
    {
        entries += Number(0x81000000, 4) + Number(8 + 8 * chains.size() + bodies.size(), 4);
        bodies += Make(chain);
    }
    return file + Number(chains.size(), 2) + Number(0, 2) + Number(7 + entries.size() + bodies.size(), 4) + entries + bodies;
}
}
