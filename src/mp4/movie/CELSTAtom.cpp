#include "mp4/movie/CELSTAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/movie/CMOOVAtom.h"

CELSTAtom::Entry CELSTAtom::GetOnlyEntry() const
{
    if (m_entries.GetCount() != 1)
        ThrowException(L"Cannot merge ELST boxes with multiple entries");
    const int32_t width = GetLongWidth();
    const bool isShort = width == 4;
    return {isShort ? m_entries.Get<uint32_t>(0) : m_entries.Get<uint64_t>(0),
            isShort ? m_entries.Get<int32_t>(0, width) : m_entries.Get<int64_t>(0, width), m_entries.Get<uint16_t>(0, 2 * width),
            m_entries.Get<uint16_t>(0, 2 * width + 2)};
}

// Its width is that of the version, which may have been raised.
void CELSTAtom::SetOnlyEntry(const Entry& entry)
{
    const int32_t width = GetLongWidth();
    m_entries = CAtomTable(2 * width + 4);
    m_entries.AddRows(1);
    if (width == 4)
    {
        m_entries.Set(0, static_cast<uint32_t>(entry.Duration));
        m_entries.Set(0, static_cast<int32_t>(entry.MediaTime), width);
    }
    else
    {
        m_entries.Set(0, entry.Duration);
        m_entries.Set(0, entry.MediaTime, width);
    }
    m_entries.Set(0, entry.RateWhole, 2 * width);
    m_entries.Set(0, entry.RateFraction, 2 * width + 2);
}

void CELSTAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CELSTAtom&>(other);
    Entry own = GetOnlyEntry();
    const Entry more = second.GetOnlyEntry();
    if (!own.IsWhole() || !more.IsWhole())
        ThrowException(L"ELST boxes are too complex to merge.\r\nMedia Time (should be 0): %I64u %I64u\r\n"
                       L"Media Rate Int (should be 1): %u %u\r\nMedia Rate Frac (should be 0): %u %u",
                       static_cast<uint64_t>(own.MediaTime), static_cast<uint64_t>(more.MediaTime), uint32_t {own.RateWhole},
                       uint32_t {more.RateWhole}, uint32_t {own.RateFraction}, uint32_t {more.RateFraction});
    AddDuration(own.Duration, second, more.Duration, CMOOVAtom::FindTimescales(*this, second));
    SetOnlyEntry(own);
}
