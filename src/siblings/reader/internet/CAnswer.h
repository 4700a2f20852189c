#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The head of what a server answers: the status and the header lines of the last answer of an exchange, which may have several
// because a server may send interim answers first.
class CAnswer
{
public:
    // More bytes of header lines in one exchange are no honest answer.
    static constexpr size_t MaximumSize = 0x100000;

    // Takes the next line as it came. A status line begins a new answer, an empty line ends one, and a line after that end is
    // passed over. False when the answer must not be used; GetFault then tells why.
    bool AddLine(std::string_view line);
    // Why a line was refused; null as long as none was.
    const char* GetFault() const { return m_fault; }

    // True once the empty line is there.
    bool IsComplete() const { return m_isComplete; }
    // True for an answer that only says that another one follows.
    bool IsInterim() const { return m_status >= 100 && m_status < 200; }
    // True for a complete answer that sends the reader to its "Location". Other answers may have one too.
    bool IsRedirect() const;
    // True for a complete answer that is neither interim nor a redirect.
    bool IsFinal() const { return m_isComplete && m_status >= 200 && !IsRedirect(); }
    // Three digits, or 0 without a valid status line.
    int GetStatus() const { return m_status; }
    bool IsSuccess() const { return m_status >= 200 && m_status < 300; }
    // The lines, each with CR and LF.
    const std::string& GetHeaders() const { return m_headers; }
    // The value of the first header of a name, whose case does not count; empty if there is none.
    std::string GetValue(const char* name) const;
    // The values of all headers of a name as one list (RFC 9110, 5.3).
    std::string GetList(const char* name) const;
    // Bytes of the body, or -1 if nothing reliable tells them.
    int64_t GetContentLength() const;
    // The two numbers of "Content-Range: bytes first-last/total" and "bytes */total"; -1 for one that is missing.
    int64_t GetRangeStart() const;
    int64_t GetRangeTotal() const;

private:
    bool FindValue(const char* name, size_t& position, std::string_view& value) const;
    bool HasTwoLengths() const;

    std::string m_headers;
    size_t m_size = 0;
    int m_status = 0;
    bool m_isComplete = true;
    const char* m_fault = nullptr;
};
