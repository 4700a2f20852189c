#include "disc/dvd/CDvdTitleInfo.h"

#include "core/bytes/ZVByteCursor.h"
#include "core/containers/ZVBuffer.h"
#include "system/loader/CFileLoader.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"CDvdTitleInfo::Load"};

using DvdCursor = ZVByteCursor<std::endian::big, ZVZeroPastEnd>;

constexpr std::string_view Magic = "DVDVIDEO-VTS";
constexpr int64_t SectorSize = 2048;
constexpr int64_t ChainTablePosition = 0xcc;  // the sector of the table of program chains

// In that table.
constexpr int64_t ChainEntriesPosition = 8;
constexpr int64_t ChainEntrySize = 8;
constexpr int64_t ChainOffsetPosition = 4;  // in an entry

// In a program chain.
constexpr int64_t ProgramCountPosition = 2;
constexpr int64_t ChainTimePosition = 4;
constexpr int64_t ProgramMapPosition = 0xe6;
constexpr int64_t CellTablePosition = 0xe8;

// In the table of cells.
constexpr int64_t CellSize = 24;
constexpr int64_t CellTimePosition = 4;

// Times are added up in units of 1/90000 second, in which a frame of both rates is a whole number.
constexpr int64_t UnitsPerMillisecond = 90;
constexpr int64_t NoTime = -1;

// What a playback time counts, by the two top bits of its byte of frames. At 30000/1001 frames a second, 30 frames count as a
// second: the times of such a disc run slower than the clock.
struct TimeScale
{
    int64_t UnitsPerSecond;
    int64_t UnitsPerFrame;  // 0 for a rate that no disc has
};

constexpr TimeScale TimeScales[] = {
    {90'000,    0    },
    {90'000,    3'600},
    {90'000,    0    },
    {30 * 3003, 3'003},
};
constexpr int32_t TimeScaleShift = 6;
constexpr uint8_t FrameCountMask = 0x3f;

// The number that two decimal digits make, or NoTime when they are none.
int64_t FromBCD(uint8_t digits)
{
    const int64_t tens = digits >> 4;
    const int64_t ones = digits & 0xf;
    return tens > 9 || ones > 9 ? NoTime : tens * 10 + ones;
}

// Reads a playback time: hours, minutes, seconds and frames. NoTime when it is not there, or a part of it is no number.
int64_t ReadTime(const ZVByteSpan& chain, int64_t position)
{
    constexpr int64_t TimeSize = 4;
    if (chain.Find(position, TimeSize) == nullptr)
        return NoTime;
    DvdCursor cursor(chain, position);
    const int64_t hours = FromBCD(cursor.Read<uint8_t>());
    const int64_t minutes = FromBCD(cursor.Read<uint8_t>());
    const int64_t seconds = FromBCD(cursor.Read<uint8_t>());
    const uint8_t frameByte = cursor.Read<uint8_t>();
    const int64_t frames = FromBCD(frameByte & FrameCountMask);
    if (std::min({hours, minutes, seconds, frames}) < 0)
        return NoTime;
    const TimeScale& scale = TimeScales[frameByte >> TimeScaleShift];
    return ((hours * 60 + minutes) * 60 + seconds) * scale.UnitsPerSecond + frames * scale.UnitsPerFrame;
}

// A program chain: programs, which are runs of cells.
class ProgramChain
{
public:
    ProgramChain() = default;
    explicit ProgramChain(const ZVByteSpan& bytes)
        : m_bytes(bytes), m_time(std::max<int64_t>(ReadTime(bytes, ChainTimePosition), 0))
    {
    }

    int64_t GetTime() const { return m_time; }

    // The start of each program; none when a cell before it has no time, or when its first cell does not come after that of the
    // program before it.
    ZVArray<int64_t> GetProgramStarts() const
    {
        DvdCursor cursor(m_bytes, ProgramCountPosition);
        const int32_t programs = cursor.Read<uint8_t>();
        const int32_t cells = cursor.Read<uint8_t>();
        cursor.SeekTo(ProgramMapPosition);
        const int64_t map = cursor.Read<uint16_t>();
        const int64_t cellTable = cursor.Read<uint16_t>();
        static_assert(ProgramMapPosition + sizeof(uint16_t) == CellTablePosition);

        ZVArray<int64_t> starts;
        int64_t time = 0;
        int32_t cell = 0;
        for (int32_t program = 0; program < programs; ++program)
        {
            const int32_t first = DvdCursor(m_bytes, map + program).Read<uint8_t>() - 1;
            if (first < cell + (program == 0 ? 0 : 1) || first >= cells)
                return {};
            for (; cell < first && time != NoTime; ++cell)
                time = AddCell(time, cellTable + cell * CellSize);
            if (time == NoTime)
                return {};
            starts.Add(time / UnitsPerMillisecond);
        }
        return starts;
    }

private:
    // Adds the time of a cell. The second and further angles of a scene play while the first does.
    int64_t AddCell(int64_t time, int64_t position) const
    {
        constexpr int32_t BlockModeShift = 6;
        constexpr int32_t FirstOfBlock = 1;
        if (m_bytes.Find(position, CellSize) == nullptr)
            return NoTime;
        if (DvdCursor(m_bytes, position).Read<uint8_t>() >> BlockModeShift > FirstOfBlock)
            return time;
        const int64_t own = ReadTime(m_bytes, position + CellTimePosition);
        return own == NoTime ? NoTime : time + own;
    }

    ZVByteSpan m_bytes;
    int64_t m_time = 0;
};

// The longest chain of a table, the first of several.
ProgramChain FindLongest(const ZVByteSpan& table)
{
    // The count has 16 bits, so a table of entries that all lead to one place costs little too.
    const int64_t count = DvdCursor(table).Read<uint16_t>();
    ProgramChain longest;
    for (int64_t index = 0; index < count; ++index)
    {
        const int64_t entry = ChainEntriesPosition + index * ChainEntrySize;
        if (table.Find(entry, ChainEntrySize) == nullptr)
            break;
        const int64_t offset = DvdCursor(table, entry + ChainOffsetPosition).Read<uint32_t>();
        const ProgramChain chain(table.Part(offset, table.GetSize()));
        if (chain.GetTime() > longest.GetTime())
            longest = chain;
    }
    return longest;
}
}

bool CDvdTitleInfo::Load(const ZVString& path)
{
    Duration = 0;
    Chapters.RemoveAll();
    CFileLoader loader;
    loader.SetStreaming(false);
    loader.SetAllowInternet(false);
    loader.SetLimits(MaximumSize, true);
    ZVBuffer bytes;
    if (!loader.Load(ZVFilename::FromPath(path), bytes))
        return false;
    if (Read(ZVByteSpan(bytes.GetData(), bytes.GetUsed())))
        return true;
    Source.Log("%s has no program chain with a time.", path);
    return false;
}

bool CDvdTitleInfo::Read(const ZVByteSpan& file)
{
    Duration = 0;
    Chapters.RemoveAll();
    DvdCursor cursor(file);
    if (cursor.ReadBytes(static_cast<int64_t>(Magic.size())) != Magic)
        return false;
    cursor.SeekTo(ChainTablePosition);
    const int64_t table = SectorSize * cursor.Read<uint32_t>();
    const ProgramChain film = FindLongest(file.Part(table, file.GetSize()));
    if (film.GetTime() == 0)
        return false;
    Duration = film.GetTime() / UnitsPerMillisecond;
    Chapters = film.GetProgramStarts();
    return true;
}
