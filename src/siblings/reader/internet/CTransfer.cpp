#include "siblings/reader/internet/CTransfer.h"

#include "siblings/reader/CResourceName.h"
#include "siblings/reader/internet/CRequest.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/eventfd.h>
#include <vector>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"CTransfer::Fail"};

constexpr char Protocols[] = "http,https";
constexpr char UserAgent[] = "ZVReader";
// A connection can serve the next request only when the answer of the last one is read to its end. The body of a redirect that is
// larger than this costs more than another connection.
constexpr int64_t MaximumRedirectBody = 0x10000;

template <class Value>
Value GetInformation(const CCurlLibrary& library, CURL* handle, CURLINFO name)
{
    Value value = {};
    return library.curl_easy_getinfo(handle, name, &value) == CURLE_OK ? value : Value();
}

bool Append(const CCurlLibrary& library, CCurlListPointer& list, const std::string& line)
{
    curl_slist* const longer = library.curl_slist_append(list.get(), line.c_str());
    if (longer == nullptr)
        return false;
    // It is the old list made longer, or the first one.
    list.release();
    list.reset(longer);
    return true;
}
}

CTransfer::CTransfer() : m_wakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void CTransfer::Cancel()
{
    m_isCancelled = true;
    // Without the event the next look at the flag ends the wait.
    if (m_wakeUp.IsOpen())
        eventfd_write(m_wakeUp.Get(), 1);
}

bool CTransfer::Start(const std::string& address, const CExchange& exchange)
{
    Reset();
    m_address = address;
    m_hop = {address, exchange.Request.GetMethod(), false};
    SendHop(exchange);
    for (int redirects = 0; !m_hasFailed && m_answer.IsRedirect(); ++redirects)
        FollowRedirect(exchange, redirects);
    return HasHead();
}

void CTransfer::FollowRedirect(const CExchange& exchange, int earlierRedirects)
{
    const char* reason = "it is redirected too often";
    if (earlierRedirects < CRedirect::Maximum)
        reason = CRedirect::Follow(*m_library, m_address, m_answer.GetStatus(), m_answer.GetValue("Location"), m_hop);
    if (reason != nullptr)
    {
        Fail(reason);
        return;
    }
    m_isRedirected = true;
    SendHop(exchange);
}

// Sends one request and waits for the head of its answer.
void CTransfer::SendHop(const CExchange& exchange)
{
    Stop();
    m_error[0] = '\0';
    m_received = 0;
    m_bodyBytes = 0;
    m_pace.Reset();
    if (!Prepare(exchange))
    {
        Fail("libcurl does not take the request");
        return;
    }
    m_isRunning = true;
    Run([this] { return HasHead() || m_bodyBytes > MaximumRedirectBody; });
}

bool CTransfer::Prepare(const CExchange& exchange)
{
    m_library = CCurlLibrary::Get();
    if (m_library == nullptr)
        return false;
    if (m_multi == nullptr)
        m_multi.reset(m_library->curl_multi_init());
    if (m_handle == nullptr)
        m_handle.reset(m_library->curl_easy_init());
    if (m_multi == nullptr || m_handle == nullptr)
        return false;
    m_library->curl_easy_reset(m_handle.get());
    return AddHeaders(exchange) && SetOptions(exchange.RangeStart) && SetBody(exchange.Request) &&
           m_library->curl_multi_add_handle(m_multi.get(), m_handle.get()) == CURLM_OK;
}

bool CTransfer::AddHeaders(const CExchange& exchange)
{
    std::vector<std::string> lines =
        exchange.Request.GetHeaders(exchange.LeftOut | (m_hop.IsElsewhere ? CRequest::Credentials : 0));
    // Without the first libcurl would ask whether a large body is welcome and wait for the answer, and without the second it would
    // call every body a form.
    lines.emplace_back("Expect:");
    if (!exchange.Request.HasHeader("Content-Type"))
        lines.emplace_back("Content-Type:");
    return std::all_of(lines.begin(), lines.end(),
                       [this](const std::string& line) { return Append(*m_library, m_headers, line); });
}

template <class Value>
bool CTransfer::Set(CURLoption option, Value value)
{
    return m_library->curl_easy_setopt(m_handle.get(), option, value) == CURLE_OK;
}

bool CTransfer::SetOptions(int64_t rangeStart)
{
#if LIBCURL_VERSION_NUM >= 0x075700
    // A cancelled transfer must not wait for a name server that is silent. Older libraries do wait.
    Set(CURLOPT_QUICK_EXIT, 1L);
#endif
    // An authority of the user's own, as other programs take it from the same variable.
    const char* const certificates = getenv("SSL_CERT_FILE");
    const std::string range = std::to_string(rangeStart) + "-";
    const int32_t timeout = m_pace.GetTimeout();
    return Set(CURLOPT_URL, m_hop.Address.c_str()) && Set(CURLOPT_PROTOCOLS_STR, Protocols) && Set(CURLOPT_SSL_VERIFYPEER, 1L) &&
           Set(CURLOPT_SSL_VERIFYHOST, 2L) &&
           (certificates == nullptr || *certificates == '\0' || Set(CURLOPT_CAINFO, certificates)) &&
           // The streams of HTTP/2 share a window of many megabytes, which libcurl would hold while nobody reads.
           Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1)) && Set(CURLOPT_HTTP_CONTENT_DECODING, 0L) &&
           Set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L) && Set(CURLOPT_NOSIGNAL, 1L) && Set(CURLOPT_USERAGENT, UserAgent) &&
           Set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timeout > 0 ? timeout : INT32_MAX)) &&
           Set(CURLOPT_ERRORBUFFER, m_error) && Set(CURLOPT_HTTPHEADER, m_headers.get()) &&
           Set(CURLOPT_HEADERFUNCTION, &OnHeader) && Set(CURLOPT_HEADERDATA, this) && Set(CURLOPT_WRITEFUNCTION, &OnBody) &&
           Set(CURLOPT_WRITEDATA, this) && (rangeStart <= 0 || Set(CURLOPT_RANGE, range.c_str()));
}

bool CTransfer::SetBody(const CRequest& request)
{
    m_upload = static_cast<const char*>(request.GetBody());
    m_uploadSize = request.GetBodySize();
    m_uploadPosition = 0;
    const curl_off_t size = m_uploadSize;
    switch (m_hop.Method)
    {
    case CRequestMethod::Get:
        return true;
    case CRequestMethod::Head:
        return Set(CURLOPT_NOBODY, 1L);
    case CRequestMethod::Post:
        return Set(CURLOPT_POST, 1L) && Set(CURLOPT_POSTFIELDSIZE_LARGE, size) &&
               Set(CURLOPT_POSTFIELDS, m_upload == nullptr ? "" : m_upload);
    case CRequestMethod::Put:
        return Set(CURLOPT_UPLOAD, 1L) && Set(CURLOPT_INFILESIZE_LARGE, size) && Set(CURLOPT_READFUNCTION, &OnUpload) &&
               Set(CURLOPT_READDATA, this) && Set(CURLOPT_SEEKFUNCTION, &OnUploadSeek) && Set(CURLOPT_SEEKDATA, this);
    }
    return false;
}

int64_t CTransfer::Read(void* bytes, int64_t count)
{
    int64_t done = TakePending(bytes, count);
    if (done == count || !m_isRunning)
        return done;
    m_target = static_cast<char*>(bytes) + done;
    m_room = static_cast<size_t>(count - done);
    if (m_isPaused)
    {
        m_isPaused = false;
        const CURLcode result = m_library->curl_easy_pause(m_handle.get(), CURLPAUSE_CONT);
        if (result != CURLE_OK)
            Fail(m_library->curl_easy_strerror(result));
    }
    Run([this] { return m_room == 0; });
    done = m_target - static_cast<char*>(bytes);
    m_target = nullptr;
    m_room = 0;
    return done;
}

int64_t CTransfer::TakePending(void* bytes, int64_t count)
{
    const size_t taken = std::min(m_pending.size() - m_pendingStart, static_cast<size_t>(count));
    if (taken == 0)
        return 0;
    memcpy(bytes, m_pending.data() + m_pendingStart, taken);
    m_pendingStart += taken;
    if (m_pendingStart == m_pending.size())
    {
        m_pending.clear();
        m_pendingStart = 0;
    }
    return static_cast<int64_t>(taken);
}

template <class Condition>
void CTransfer::Run(Condition condition)
{
    m_pace.BeginWait();
    while (m_isRunning && !condition())
    {
        if (!Advance())
            return;
        // Also before a return, or many short waits would count as none.
        if (const char* const reason = m_pace.Check(GetPaceState()))
        {
            Fail(reason);
            return;
        }
        if (condition())
            return;
        curl_waitfd wakeUp = {m_wakeUp.Get(), CURL_WAIT_POLLIN, 0};
        m_library->curl_multi_poll(m_multi.get(), &wakeUp, m_wakeUp.IsOpen() ? 1 : 0, m_pace.GetLongestWait(), nullptr);
    }
}

// One step without waiting. False when the exchange has ended.
bool CTransfer::Advance()
{
    if (m_isCancelled)
        Fail("cancelled");
    int running = 0;
    if (m_isRunning && m_library->curl_multi_perform(m_multi.get(), &running) != CURLM_OK)
        Fail("libcurl cannot go on");
    if (m_isRunning)
        TakeMessages();
    return m_isRunning;
}

void CTransfer::TakeMessages()
{
    int left = 0;
    const CURLMsg* const message = m_library->curl_multi_info_read(m_multi.get(), &left);
    if (message == nullptr || message->msg != CURLMSG_DONE)
        return;
    const CURLcode result = message->data.result;
    if (m_refusal != nullptr)
        Fail(m_refusal);
    else if (result != CURLE_OK)
        Fail(m_error[0] != '\0' ? m_error : m_library->curl_easy_strerror(result));
    m_isRunning = false;
}

CTransferPace::State CTransfer::GetPaceState() const
{
    const bool isConnected = GetInformation<curl_off_t>(*m_library, m_handle.get(), CURLINFO_PRETRANSFER_TIME_T) > 0;
    const int64_t sent = GetInformation<curl_off_t>(*m_library, m_handle.get(), CURLINFO_SIZE_UPLOAD_T);
    const int64_t moved = sent + m_received;
    return {moved + (isConnected ? 1 : 0), moved, m_received > 0 || (sent > 0 && sent < m_uploadSize)};
}

void CTransfer::Fail(const char* reason)
{
    Source.Log("%s: %s", CResourceName::GetLoggedAddress(m_address).c_str(), reason);
    m_hasFailed = true;
    m_isRunning = false;
}

std::string CTransfer::GetLocation() const
{
    const std::string location = m_answer.GetValue("Location");
    return location.empty() && m_isRedirected ? m_hop.Address : location;
}

void CTransfer::Stop()
{
    m_isRunning = false;
    m_isPaused = false;
    m_pending.clear();
    m_pendingStart = 0;
    if (m_handle != nullptr)
        m_library->curl_multi_remove_handle(m_multi.get(), m_handle.get());
    m_headers.reset();
}

void CTransfer::Reset()
{
    Stop();
    m_answer = {};
    m_isRedirected = false;
    m_refusal = nullptr;
    m_hasFailed = false;
    m_hasBody = false;
}

size_t CTransfer::OnHeader(char* bytes, size_t size, size_t count, void* transfer)
{
    CTransfer& self = *static_cast<CTransfer*>(transfer);
    const size_t length = size * count;
    try
    {
        // What comes after the body belongs to its framing.
        if (!self.m_hasBody && !self.m_answer.AddLine({bytes, length}))
        {
            self.m_refusal = self.m_answer.GetFault();
            return 0;
        }
    }
    catch (const std::bad_alloc&)
    {
        return 0;
    }
    // A server that sends nothing but interim answers keeps its reader waiting as one that is silent.
    if (!self.m_answer.IsInterim())
        self.m_received += static_cast<int64_t>(length);
    return length;
}

size_t CTransfer::OnBody(char* bytes, size_t size, size_t count, void* transfer)
{
    CTransfer& self = *static_cast<CTransfer*>(transfer);
    try
    {
        return self.TakeBody(bytes, size * count);
    }
    catch (const std::bad_alloc&)
    {
        return 0;
    }
}

// Tells libcurl how many bytes were taken, or that it has to wait.
size_t CTransfer::TakeBody(const char* bytes, size_t length)
{
    const int64_t bodyBytes = m_bodyBytes + static_cast<int64_t>(length);
    if (!m_answer.IsRedirect())
    {
        m_hasBody = true;
        if (m_room == 0)
        {
            m_isPaused = true;
            return CURL_WRITEFUNC_PAUSE;
        }
        if (bodyBytes > m_pace.GetLimits().UndeclaredBody && m_answer.GetContentLength() < 0)
        {
            m_refusal = "the answer is larger than one without a length may be";
            return 0;
        }
        const size_t taken = std::min(length, m_room);
        m_pending.assign(bytes + taken, length - taken);
        m_pendingStart = 0;
        memcpy(m_target, bytes, taken);
        m_target += taken;
        m_room -= taken;
    }
    m_received += static_cast<int64_t>(length);
    m_bodyBytes = bodyBytes;
    return length;
}

size_t CTransfer::OnUpload(char* bytes, size_t size, size_t count, void* transfer)
{
    CTransfer& self = *static_cast<CTransfer*>(transfer);
    const int64_t taken = std::min(static_cast<int64_t>(size * count), self.m_uploadSize - self.m_uploadPosition);
    if (taken <= 0)
        return 0;
    memcpy(bytes, self.m_upload + self.m_uploadPosition, static_cast<size_t>(taken));
    self.m_uploadPosition += taken;
    return static_cast<size_t>(taken);
}

int CTransfer::OnUploadSeek(void* transfer, curl_off_t offset, int origin)
{
    CTransfer& self = *static_cast<CTransfer*>(transfer);
    if (origin != SEEK_SET || offset < 0 || offset > self.m_uploadSize)
        return CURL_SEEKFUNC_CANTSEEK;
    self.m_uploadPosition = offset;
    return CURL_SEEKFUNC_OK;
}
