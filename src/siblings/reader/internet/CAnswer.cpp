#include "siblings/reader/internet/CAnswer.h"

#include "siblings/reader/internet/CHeaderText.h"
#include "siblings/reader/internet/CRedirect.h"

#include <algorithm>

namespace
{
constexpr std::string_view StatusLineStart = "HTTP/";
constexpr std::string_view BytesUnit = "bytes";
constexpr std::string_view ListSeparator = ", ";

// The status of "HTTP/1.1 200 OK": three digits after the first blank. 0 for a line without them.
int ReadStatus(std::string_view line)
{
    const size_t blank = line.find(' ');
    if (blank == std::string_view::npos)
        return 0;
    const std::string_view rest = line.substr(blank + 1);
    const std::string_view digits = rest.substr(0, rest.find(' '));
    const int64_t status = digits.size() == 3 ? CHeaderText::ReadNumber(digits) : -1;
    return status < 100 ? 0 : static_cast<int>(status);
}

// The rest after "bytes" and its blanks, or empty.
std::string_view CutBytesUnit(std::string_view text)
{
    if (!CHeaderText::IsEqual(text.substr(0, BytesUnit.size()), BytesUnit))
        return {};
    return CHeaderText::Trim(text.substr(BytesUnit.size()));
}

// Takes the first entry from a list.
std::string_view TakeEntry(std::string_view& list)
{
    const std::string_view entry = list.substr(0, list.find(','));
    list.remove_prefix(std::min(entry.size() + 1, list.size()));
    return CHeaderText::Trim(entry);
}
}

bool CAnswer::AddLine(std::string_view line)
{
    m_size += line.size();
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.remove_suffix(1);
    if (m_size > MaximumSize)
        m_fault = "the answer has too many header lines";
    else if (m_isComplete && line.substr(0, StatusLineStart.size()) == StatusLineStart)
    {
        m_headers.clear();
        m_status = ReadStatus(line);
        m_isComplete = false;
    }
    else if (line.empty())
    {
        m_isComplete = true;
        // Who believes the one and who believes the other would see two different answers (RFC 9112, 6.3).
        if (HasTwoLengths())
            m_fault = "the answer has two lengths";
    }
    else if (!m_isComplete)
        m_headers.append(line).append("\r\n");
    return m_fault == nullptr;
}

bool CAnswer::IsRedirect() const
{
    return m_isComplete && CRedirect::IsRedirectStatus(m_status) && !GetValue("Location").empty();
}

// Finds the next header of a name, starting at a position in the lines, and moves the position past it.
bool CAnswer::FindValue(const char* name, size_t& position, std::string_view& value) const
{
    const std::string_view headers = m_headers;
    while (position < headers.size())
    {
        const size_t end = std::min(headers.find("\r\n", position), headers.size());
        const std::string_view line = headers.substr(position, end - position);
        position = end + 2;
        std::string_view found;
        if (CHeaderText::Split(line, found, value) && CHeaderText::IsEqual(found, name))
            return true;
    }
    return false;
}

std::string CAnswer::GetValue(const char* name) const
{
    size_t position = 0;
    std::string_view value;
    return FindValue(name, position, value) ? std::string(value) : std::string();
}

std::string CAnswer::GetList(const char* name) const
{
    std::string list;
    std::string_view value;
    for (size_t position = 0; FindValue(name, position, value);)
        list.append(list.empty() ? "" : ListSeparator).append(value);
    return list;
}

bool CAnswer::HasTwoLengths() const
{
    const std::string lengths = GetList("Content-Length");
    std::string_view rest = lengths;
    const int64_t first = CHeaderText::ReadNumber(TakeEntry(rest));
    while (!rest.empty())
        if (CHeaderText::ReadNumber(TakeEntry(rest)) != first)
            return true;
    return false;
}

int64_t CAnswer::GetContentLength() const
{
    // A body in chunks tells its length at its end, whatever else is said (RFC 9112, 6.3).
    if (!GetValue("Transfer-Encoding").empty())
        return -1;
    // The header may say the same length several times.
    const std::string lengths = GetValue("Content-Length");
    std::string_view rest = lengths;
    return CHeaderText::ReadNumber(TakeEntry(rest));
}

int64_t CAnswer::GetRangeStart() const
{
    const std::string value = GetValue("Content-Range");
    const std::string_view range = CutBytesUnit(value);
    return CHeaderText::ReadNumber(range.substr(0, range.find('-')));
}

int64_t CAnswer::GetRangeTotal() const
{
    const std::string value = GetValue("Content-Range");
    const std::string_view range = CutBytesUnit(value);
    const size_t slash = range.find('/');
    return slash == std::string_view::npos ? -1 : CHeaderText::ReadNumber(range.substr(slash + 1));
}
