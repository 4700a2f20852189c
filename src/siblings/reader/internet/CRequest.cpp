#include "siblings/reader/internet/CRequest.h"

#include "siblings/reader/internet/CHeaderText.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <iterator>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"CRequest::SetHeaders"};

struct MethodName
{
    const char* Name;
    CRequestMethod Method;
};

constexpr MethodName MethodNames[] = {
    {"GET",  CRequestMethod::Get },
    {"HEAD", CRequestMethod::Head},
    {"POST", CRequestMethod::Post},
    {"PUT",  CRequestMethod::Put },
};

// Headers that the transfer makes by itself: a wrong length or framing would let a server read the body as another request.
constexpr const char* MessageHeaders[] = {"Content-Length", "Transfer-Encoding", "Expect"};

struct HeaderGroup
{
    const char* Name;
    uint32_t Group;
};

// For the conditions see RFC 9110, 13.1 and 14.2.
constexpr HeaderGroup HeaderGroups[] = {
    {"If-Match",            CRequest::Conditions },
    {"If-None-Match",       CRequest::Conditions },
    {"If-Modified-Since",   CRequest::Conditions },
    {"If-Unmodified-Since", CRequest::Conditions },
    {"If-Range",            CRequest::Conditions },
    {"Range",               CRequest::Conditions },
    {"Authorization",       CRequest::Credentials},
    {"Cookie",              CRequest::Credentials},
};

bool IsMessageHeader(std::string_view name)
{
    return std::any_of(std::begin(MessageHeaders), std::end(MessageHeaders),
                       [&](const char* entry) { return CHeaderText::IsEqual(entry, name); });
}

bool IsInGroup(std::string_view name, uint32_t groups)
{
    return std::any_of(std::begin(HeaderGroups), std::end(HeaderGroups),
                       [&](const HeaderGroup& entry)
                       { return (entry.Group & groups) != 0 && CHeaderText::IsEqual(entry.Name, name); });
}

std::string_view GetName(std::string_view line)
{
    return line.substr(0, line.find_first_of(":;"));
}

// A tab is the only control character that a value may have.
bool HasControlCharacter(std::string_view text)
{
    return std::any_of(text.begin(), text.end(),
                       [](char character)
                       { return (static_cast<uint8_t>(character) < ' ' && character != '\t') || character == '\x7f'; });
}
}

void CRequest::SetHeaders(const std::string& text)
{
    m_headers.clear();
    m_isValid = true;
    m_hasMethod = false;
    m_rangeStart = 0;
    m_usesCache = false;
    m_succeedsOnError = false;
    for (size_t start = 0; start < text.size();)
    {
        const size_t end = std::min(text.find_first_of("|\r\n", start), text.size());
        if (end > start)
            AddLine(text.substr(start, end - start));
        start = end + 1;
    }
}

void CRequest::SetBody(const void* bytes, int64_t size)
{
    m_body = size > 0 ? bytes : nullptr;
    m_bodySize = m_body == nullptr ? 0 : size;
}

void CRequest::AddLine(const std::string& line)
{
    const std::string_view trimmed = CHeaderText::Trim(line);
    std::string_view name;
    std::string_view value;
    if (!CHeaderText::Split(trimmed, name, value) || HasControlCharacter(value))
    {
        // Only its name, since a value may be a secret.
        Source.Log("A line that is no header is left out: '%s'", std::string(GetName(trimmed)).c_str());
        return;
    }
    if (SetOption(std::string(name), std::string(value)) || IsMessageHeader(name))
        return;
    // libcurl sends a header without a value only in this form; with a colon it would drop the line.
    m_headers.push_back(value.empty() ? std::string(name) + ";" : std::string(name) + ": " + std::string(value));
}

bool CRequest::SetOption(const std::string& name, const std::string& value)
{
    bool isUnderstood = true;
    if (CHeaderText::IsEqual(name, "HTTPREQUEST_TYPE"))
    {
        const auto* const end = MethodNames + std::size(MethodNames);
        const auto* const found =
            std::find_if(MethodNames, end, [&](const MethodName& entry) { return CHeaderText::IsEqual(entry.Name, value); });
        isUnderstood = found != end;
        m_hasMethod = isUnderstood;
        if (isUnderstood)
            m_method = found->Method;
    }
    else if (CHeaderText::IsEqual(name, "RANGE_START"))
    {
        m_rangeStart = CHeaderText::ReadNumber(value);
        isUnderstood = m_rangeStart >= 0;
    }
    else if (CHeaderText::IsEqual(name, "USE_CACHE"))
        m_usesCache = value == "1";
    else if (CHeaderText::IsEqual(name, "SUCCEED_ON_ERROR"))
        m_succeedsOnError = value == "1";
    else
        return false;
    if (!isUnderstood)
    {
        m_isValid = false;
        Source.Log("%s cannot be '%s'", name.c_str(), value.c_str());
    }
    return true;
}

CRequestMethod CRequest::GetMethod() const
{
    if (m_hasMethod)
        return m_method;
    return m_body == nullptr ? CRequestMethod::Get : CRequestMethod::Post;
}

bool CRequest::HasHeader(const char* name) const
{
    return std::any_of(m_headers.begin(), m_headers.end(),
                       [&](const std::string& line) { return CHeaderText::IsEqual(GetName(line), name); });
}

std::vector<std::string> CRequest::GetHeaders(uint32_t leftOut) const
{
    std::vector<std::string> headers;
    for (const std::string& line : m_headers)
        if (!IsInGroup(GetName(line), leftOut))
            headers.push_back(line);
    if (!m_usesCache && !HasHeader("Cache-Control"))
        headers.emplace_back("Cache-Control: no-cache");
    return headers;
}
