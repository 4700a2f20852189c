#pragma once

#include "core/bytes/ZVByteCursor.h"
#include "mp4/model/CGeneralReader.h"

#include <bit>
#include <cstdint>
#include <memory>
#include <span>

// What all atoms of one file may cost together, however they are nested. Files that were made to be costly go beyond it; real ones
// have some hundred atoms, ten deep at most.
struct CAtomLimits
{
    static constexpr int32_t MaximumDepth = 64;
    static constexpr int32_t MaximumAtoms = 1'000'000;
    // In the lists of varying entries, whose entries take more memory than they take bytes in the file. Those of the largest
    // pictures have some hundred thousand.
    static constexpr int32_t MaximumEntries = 4'000'000;
    // How much may be read again after attempts that do not succeed, beside twice the length of the file.
    static constexpr int64_t RereadAllowance = int64_t {1} << 20;

    int32_t Depth = 0;
    int32_t Atoms = 0;
    int32_t Entries = 0;
    int64_t RereadBytes = 0;
};

// Reads the big-endian numbers and the bytes of a file, through one block of 64 KiB. What is not there ends the reading with the
// message ReadPastEnd. It belongs to one thread. Without a file nothing can be read.
class CAtomReader
{
public:
    CAtomReader() = default;
    explicit CAtomReader(CGeneralReader* stream) { Attach(stream); }
    CAtomReader(const CAtomReader&) = delete;
    CAtomReader& operator=(const CAtomReader&) = delete;

    // Begins at the start of a file, which must outlive the reader, or gives up the one it has.
    void Attach(CGeneralReader* stream);

    int64_t GetLength() const { return m_length; }
    int64_t GetPosition() const { return m_cursor.GetPosition(); }
    // How many bytes there are from the position on.
    int64_t GetAvailable() const { return m_length - GetPosition(); }

    // Goes to a position inside the file or at its end; otherwise the reader stays where it is.
    void Seek(int64_t position);

    // Reads an unsigned number of 1 to 8 bytes.
    uint64_t ReadNumber(int32_t width) { return m_cursor.ReadUnsigned(width); }
    // Reads that many bytes. Those that are not in the block go past it.
    void ReadBytes(void* bytes, int64_t count);

    CAtomLimits Limits;

private:
    // The part of the file that is in memory.
    class Block
    {
    public:
        CGeneralReader* Stream = nullptr;

        void Drop() { m_used = 0; }
        // That many bytes, at most as many as a block has; null when they are not there.
        const uint8_t* Find(int64_t position, int64_t count);
        // What is in memory already of the bytes from a position on.
        std::span<const uint8_t> FindPresent(int64_t position) const;

    private:
        static constexpr int64_t Size = 0x10000;

        std::unique_ptr<uint8_t[]> m_bytes;
        int64_t m_used = 0;
        int64_t m_position = 0;
    };

    // The way of the cursor to the block.
    struct Source
    {
        Block* Bytes;

        const uint8_t* Find(int64_t position, int64_t count) const { return Bytes->Find(position, count); }
    };

    struct ThrowPastEnd
    {
        static void OnPastEnd();
    };

    Block m_block;
    ZVByteCursor<std::endian::big, ThrowPastEnd, Source> m_cursor {Source {&m_block}};
    int64_t m_length = 0;
};
