#pragma once

#include "mp4/model/CGeneralReader.h"

#include <cstdint>
#include <optional>
#include <vector>

// Looks for the beginnings of mdat atoms in a file whose atoms do not lead to one. It goes through whole blocks of the file, so
// that the media of a long film are passed as fast as they can be read.
class CMDATSearch
{
public:
    explicit CMDATSearch(CGeneralReader& file) : m_file(file), m_length(file.GetLength()) {}

    // The place of the first header, from a position on, whose type is mdat. Nothing when there is none; the first header of a
    // file does not count.
    std::optional<int64_t> FindNextMDAT(int64_t from);

private:
    static constexpr int64_t BlockSize = int64_t {1} << 20;

    bool Load(int64_t position);

    CGeneralReader& m_file;
    int64_t m_length;
    std::vector<char> m_block;
    int64_t m_blockPosition = 0;
};
