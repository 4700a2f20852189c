#include "siblings/reader/internet/CAnswer.h"

#include "siblings/reader/internet/CHeaderText.h"

#include <algorithm>

namespace
{
constexpr std::string_view StatusLineStart = "HTTP/";
constexpr std::string_view BytesUnit = "bytes";

// The status of "HTTP/1.1 200 OK": three digits behind the first blank. 0 for a line without.
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

// Behind "bytes" and its blanks, or empty.
std::string_view CutBytesUnit(std::string_view text)
{
    if (!CHeaderText::IsEqual(text.substr(0, BytesUnit.size()), BytesUnit))
        return {};
    return CHeaderText::Trim(text.substr(BytesUnit.size()));
}
}

bool CAnswer::AddLine(std::string_view line)
{
    m_size += line.size();
    if (m_size > MaximumSize)
        return false;
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.remove_suffix(1);
    if (m_isComplete && line.substr(0, StatusLineStart.size()) == StatusLineStart)
    {
        m_headers.clear();
        m_status = ReadStatus(line);
        m_isComplete = false;
    }
    else if (line.empty())
        m_isComplete = true;
    else if (!m_isComplete)
        m_headers.append(line).append("\r\n");
    return true;
}

bool CAnswer::IsFinal() const
{
    return m_isComplete && m_status >= 200 && (m_status < 300 || m_status > 399 || GetValue("Location").empty());
}

std::string CAnswer::GetValue(const char* name) const
{
    const std::string_view headers = m_headers;
    for (size_t start = 0; start < headers.size();)
    {
        const size_t end = std::min(headers.find("\r\n", start), headers.size());
        std::string_view found;
        std::string_view value;
        if (CHeaderText::Split(headers.substr(start, end - start), found, value) && CHeaderText::IsEqual(found, name))
            return std::string(value);
        start = end + 2;
    }
    return {};
}

int64_t CAnswer::GetContentLength() const
{
    // A body in chunks tells its length at its end, whatever else is said (RFC 9112, 6.3).
    return GetValue("Transfer-Encoding").empty() ? CHeaderText::ReadNumber(GetValue("Content-Length")) : -1;
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
