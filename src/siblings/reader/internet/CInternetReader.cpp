#include "siblings/reader/internet/CInternetReader.h"

#include "core/string/ZVStringUTF8.h"
#include "siblings/reader/CResourceName.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"CInternetReader::Refuse"};

constexpr int OK = 200;
constexpr int PartialContent = 206;
constexpr int RangeNotSatisfiable = 416;

// Reading over this many bytes is faster than asking again, even on a fast line.
constexpr int64_t MaximumSkip = 0x40000;
constexpr size_t SkipBlockSize = 0x4000;
}

CInternetReader::CInternetReader(const ZVString& name) : m_address(CResourceName::GetAddress(name)) {}

void CInternetReader::Cancel()
{
    CReader::Cancel();
    m_transfer.Cancel();
}

void CInternetReader::SetHeaders(const wchar_t* headers)
{
    try
    {
        m_hasHeaders = true;
        m_request.SetHeaders(ZVStringUTF8(headers == nullptr ? L"" : headers).Get());
    }
    catch (const std::bad_alloc&)
    {
        m_hasHeaders = false;
    }
}

bool CInternetReader::Open()
{
    m_isOpen = false;
    m_hasFailed = true;
    m_position = 0;
    m_size = -1;
    m_isBroken = false;
    m_isStreaming = false;
    m_transfer.Reset();
    try
    {
        m_isOpen = !IsCancelled() && OpenAnswer();
    }
    catch (const std::bad_alloc&)
    {
    }
    if (!m_isOpen)
        m_transfer.Stop();
    m_hasFailed = !m_isOpen;
    return m_isOpen;
}

bool CInternetReader::OpenAnswer()
{
    if (m_address.empty())
        return Refuse("an address has no control characters");
    if (!m_request.IsValid() || !m_hasHeaders)
        return Refuse("the header lines cannot be sent");
    return m_transfer.Start(m_address, {m_request, m_request.GetRangeStart()}) && TakeAnswer();
}

// Judges the first answer and learns from it.
bool CInternetReader::TakeAnswer()
{
    const CAnswer& answer = m_transfer.GetAnswer();
    const bool isPart = answer.GetStatus() == PartialContent;
    const bool isTooFar = answer.GetStatus() == RangeNotSatisfiable;
    m_tag = answer.GetValue("ETag");
    if (isPart || isTooFar)
        m_size = answer.GetRangeTotal();
    // A 304 is no error but has nothing to read, and neither has a redirect that leads nowhere.
    const bool isReadable = answer.IsSuccess() || (answer.GetStatus() >= 400 && m_request.SucceedsOnError());
    if (!isReadable)
        return Refuse(ZVStringUTF8(ZVFormat(L"the server answers with %d", answer.GetStatus())));
    const int64_t start = isPart ? std::max<int64_t>(answer.GetRangeStart(), 0) : 0;
    if (isPart && m_request.GetRangeStart() > 0 && start != m_request.GetRangeStart())
        return Refuse("the server sends another range than it was asked for");
    if (!isPart)
        m_size = answer.GetContentLength();
    m_position = m_streamPosition = m_askedPosition = start;
    m_isStreaming = true;
    return true;
}

int64_t CInternetReader::Read(void* bytes, int64_t count)
{
    m_hasFailed = !m_isOpen || m_isBroken || IsCancelled();
    if (m_hasFailed || count <= 0 || m_request.GetMethod() == CRequestMethod::Head)
        return 0;
    int64_t done = 0;
    try
    {
        done = ReadStream(static_cast<char*>(bytes), count);
    }
    catch (const std::bad_alloc&)
    {
        m_isBroken = true;
    }
    m_hasFailed = m_isBroken;
    return done;
}

int64_t CInternetReader::ReadStream(char* bytes, int64_t count)
{
    int64_t done = 0;
    while (!m_isBroken && done < count && (m_size < 0 || m_position < m_size))
    {
        m_isBroken = !GoTo(m_position);
        if (m_isBroken)
            break;
        const int64_t read = m_transfer.Read(bytes + done, count - done);
        done += read;
        m_position = m_streamPosition += read;
        m_isBroken = m_transfer.HasFailed();
        if (done == count || m_isBroken || m_size < 0 || m_position == m_size)
            break;
        // The answer has ended before the resource. A server may send less than the range that it was asked for (RFC 9110,
        // 15.3.7); a caller that named its range gets no more than that.
        if (m_request.HasHeader("Range"))
            break;
        m_isStreaming = false;
        m_isBroken = m_transfer.GetAnswer().GetStatus() != PartialContent || m_streamPosition == m_askedPosition;
    }
    return done;
}

int64_t CInternetReader::Seek(int64_t position)
{
    const bool isPlace = m_isOpen && !IsCancelled() && position >= 0 && (m_size < 0 || position <= m_size);
    const bool isWayBack = position < m_streamPosition;
    if (!isPlace || position == m_position || (isWayBack && !CanAskAgain()))
        return m_position;
    const int64_t former = m_position;
    const bool wasBroken = m_isBroken;
    m_position = position;
    m_isBroken = wasBroken && !CanAskAgain();
    if (m_size >= 0 || m_request.GetMethod() == CRequestMethod::Head)
        return m_position;
    // Only the server knows whether the resource reaches that far.
    bool isThere = false;
    try
    {
        isThere = !m_isBroken && GoTo(position);
    }
    catch (const std::bad_alloc&)
    {
    }
    // The refusal may have told the size, and the end itself can be reached.
    if (!isThere && position != m_size)
    {
        m_position = former;
        m_isBroken = wasBroken || !CanAskAgain();
        m_isStreaming = m_isStreaming && m_streamPosition == former;
    }
    return m_position;
}

// Brings the transfer to a place in the resource.
bool CInternetReader::GoTo(int64_t position)
{
    if (m_isStreaming && position == m_streamPosition)
        return true;
    const int64_t distance = position - m_streamPosition;
    if (m_isStreaming && distance > 0 && (distance <= MaximumSkip || !CanAskAgain()))
        return SkipTo(position);
    if (!CanAskAgain())
        return Refuse("the answer to a request with a body cannot be asked for again");
    return AskAgain(position);
}

bool CInternetReader::AskAgain(int64_t position)
{
    m_isStreaming = false;
    if (!m_transfer.Start(m_address, {m_request, position, CRequest::Conditions}))
        return false;
    const CAnswer& answer = m_transfer.GetAnswer();
    const bool isPart = answer.GetStatus() == PartialContent;
    if (answer.GetStatus() == RangeNotSatisfiable && m_size < 0)
        m_size = answer.GetRangeTotal();
    if (!isPart && answer.GetStatus() != OK)
        return Refuse(ZVStringUTF8(ZVFormat(L"the server answers with %d to a range", answer.GetStatus())));
    m_streamPosition = isPart ? answer.GetRangeStart() : 0;
    if (isPart && m_streamPosition != position)
        return Refuse("the server sends another range than it was asked for");
    if (!IsSameResource())
        return Refuse("the resource has changed while it was read");
    m_askedPosition = position;
    m_isStreaming = true;
    return SkipTo(position);
}

// Bytes of two versions must not be mixed.
bool CInternetReader::IsSameResource() const
{
    const CAnswer& answer = m_transfer.GetAnswer();
    const int64_t size = answer.GetStatus() == PartialContent ? answer.GetRangeTotal() : answer.GetContentLength();
    const std::string tag = answer.GetValue("ETag");
    return (m_size < 0 || size < 0 || size == m_size) && (m_tag.empty() || tag.empty() || tag == m_tag);
}

bool CInternetReader::SkipTo(int64_t position)
{
    char block[SkipBlockSize];
    while (m_streamPosition < position)
    {
        const int64_t wanted = std::min<int64_t>(position - m_streamPosition, sizeof block);
        const int64_t read = m_transfer.Read(block, wanted);
        m_streamPosition += read;
        if (read == wanted)
            continue;
        if (!m_transfer.HasFailed() && m_size < 0)
            m_size = m_streamPosition;
        return false;
    }
    return true;
}

void CInternetReader::GetInfo(const wchar_t* key, IZVDllString& value)
{
    value.Empty();
    if (key == nullptr)
        return;
    try
    {
        const CAnswer& answer = m_transfer.GetAnswer();
        const ZVString name = key;
        ZVString text;
        if (name == L"StatusCode" && answer.GetStatus() > 0)
            text.Format(L"%d", answer.GetStatus());
        else if (name == L"AllHeaders")
            text = ZVString::FromUTF8(answer.GetHeaders().c_str());
        else if (name == L"Location")
            text = ZVString::FromUTF8(m_transfer.GetLocation().c_str());
        else if (name == L"ContentEncoding")
            text = ZVString::FromUTF8(answer.GetList("Content-Encoding").c_str());
        value.SetString(text, text.GetLength());
    }
    catch (const std::bad_alloc&)
    {
    }
}

bool CInternetReader::Refuse(const char* reason) const
{
    Source.Log("%s: %s", m_address.empty() ? "(address)" : CResourceName::GetLoggedAddress(m_address).c_str(), reason);
    return false;
}
