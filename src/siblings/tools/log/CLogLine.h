#pragma once

#include "contracts/ZVFormatRecord.h"
#include "core/string/ZVString.h"
#include "system/log/ZVLog.h"

#include <cstdint>
#include <memory>

// One line of the log: six fields with a tab between them.
//
//   2026-03-01T12:34:56.789Z  4711  4712  256  CZVThumbGrabber  Finish (result: 0) (1500 ms)
//
//   time       in UTC, to the millisecond, as ISO 8601 writes it
//   process    the process id
//   thread     the thread id, which for the main thread is the process id
//   category   the number of the category bit
//   scope      the name of the scope, which may be empty
//   text       what was logged
//
// Tabs, line breaks and all other control characters within scope and text become blanks, so one call is one line of six
// fields. Characters above U+FFFF and halves of surrogate pairs become "?", and the bytes that a path carries become what the
// report shows in their place.
class CLogLine
{
public:
    // Takes the time and formats. A null name or format counts as empty; with a null array the format is the text. Throws
    // std::bad_alloc.
    CLogLine(const ZVLogSource& source, const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t argumentCount);

    // The last field alone; not NUL-terminated.
    const wchar_t* GetText() const { return m_line.GetText() + m_textStart; }
    int32_t GetTextLength() const;

    // The line in UTF-8 with its line break, and its size in bytes.
    std::unique_ptr<char[]> GetBytes(size_t& size) const;

private:
    void AppendTimeStamp();
    void CleanFrom(int32_t start);
    void ShowCarriedBytes(int32_t start);

    ZVString m_line;
    int32_t m_textStart = 0;
};
