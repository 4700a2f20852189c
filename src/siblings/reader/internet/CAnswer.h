#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The head of what a server answers: the status and the header lines of the last answer of an exchange, which may have several
// (redirects, interim answers).
class CAnswer
{
public:
    // More bytes of header lines in one exchange are no honest answer.
    static constexpr size_t MaximumSize = 0x100000;

    // Takes the next line as it came. A status line begins a new answer, an empty line ends one, and a line behind that end is
    // passed over. False when the lines are too many.
    bool AddLine(std::string_view line);

    // True once the empty line is there.
    bool IsComplete() const { return m_isComplete; }
    // True for a complete answer behind which no other comes: no interim one, and no redirect that will be followed.
    bool IsFinal() const;
    // Three digits, or 0 without a valid status line.
    int GetStatus() const { return m_status; }
    bool IsSuccess() const { return m_status >= 200 && m_status < 300; }
    // The lines, each with CR and LF.
    const std::string& GetHeaders() const { return m_headers; }
    // The value of the first header of a name, whose case does not count; empty without one.
    std::string GetValue(const char* name) const;
    // Bytes of the body, or -1 where nothing reliable tells them.
    int64_t GetContentLength() const;
    // The two numbers of "Content-Range: bytes first-last/total" and "bytes */total", -1 for one that is not told.
    int64_t GetRangeStart() const;
    int64_t GetRangeTotal() const;

private:
    std::string m_headers;
    size_t m_size = 0;
    int m_status = 0;
    bool m_isComplete = true;
};
