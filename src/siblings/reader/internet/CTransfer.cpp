#include "siblings/reader/internet/CTransfer.h"

#include "siblings/reader/CResourceName.h"
#include "siblings/reader/internet/CRequest.h"
#include "system/log/ZVElapsedTime.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/eventfd.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"CTransfer"};

// As many as browsers follow before they suspect a circle.
constexpr long MaximumRedirects = 20;
constexpr char Protocols[] = "http,https";
constexpr char UserAgent[] = "ZVReader";
// How long a wait may last before the clock is looked at, where nothing else says so.
constexpr int32_t MaximumWait = 1000;

template <class Value>
Value GetInformation(const CCurlLibrary& library, CURL* handle, CURLINFO name)
{
    Value value = {};
    return library.curl_easy_getinfo(handle, name, &value) == CURLE_OK ? value : Value();
}
}

CTransfer::CTransfer()
{
    m_wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

CTransfer::~CTransfer()
{
    Stop();
    if (m_handle != nullptr)
        m_library->curl_easy_cleanup(m_handle);
    if (m_multi != nullptr)
        m_library->curl_multi_cleanup(m_multi);
    if (m_wakeUp != -1)
        close(m_wakeUp);
}

void CTransfer::Cancel()
{
    m_isCancelled = true;
    // Without the event the next look at the flag ends the wait.
    if (m_wakeUp != -1)
        eventfd_write(m_wakeUp, 1);
}

bool CTransfer::Start(const std::string& address, const CRequest& request, int64_t rangeStart, bool asksAgain)
{
    Reset();
    m_address = address;
    if (!Prepare(request, rangeStart, asksAgain))
    {
        Fail("libcurl does not take the request");
        return false;
    }
    m_isRunning = true;
    Run([this] { return HasHead(); });
    NoteLocation();
    return HasHead();
}

bool CTransfer::Prepare(const CRequest& request, int64_t rangeStart, bool asksAgain)
{
    m_library = CCurlLibrary::Get();
    if (m_library == nullptr)
        return false;
    if (m_multi == nullptr)
        m_multi = m_library->curl_multi_init();
    if (m_handle == nullptr)
        m_handle = m_library->curl_easy_init();
    if (m_multi == nullptr || m_handle == nullptr)
        return false;
    m_library->curl_easy_reset(m_handle);
    // Without the first the library would first ask whether a large body is welcome and wait for the answer, and without the
    // second it would call every body a form.
    std::vector<std::string> lines = request.GetHeaders(asksAgain);
    lines.emplace_back("Expect:");
    if (!request.HasHeader("Content-Type"))
        lines.emplace_back("Content-Type:");
    for (const std::string& line : lines)
    {
        curl_slist* const list = m_library->curl_slist_append(m_headers, line.c_str());
        if (list == nullptr)
            return false;
        m_headers = list;
    }
    return SetOptions(request, rangeStart) && m_library->curl_multi_add_handle(m_multi, m_handle) == CURLM_OK;
}

template <class Value>
bool CTransfer::Set(CURLoption option, Value value)
{
    return m_library->curl_easy_setopt(m_handle, option, value) == CURLE_OK;
}

bool CTransfer::SetOptions(const CRequest& request, int64_t rangeStart)
{
#if LIBCURL_VERSION_NUM >= 0x075700
    // A cancelled transfer must not wait for a name server that is silent. Older libraries do wait.
    Set(CURLOPT_QUICK_EXIT, 1L);
#endif
    // An authority of the user's own, as other programs take it from the same variable.
    const char* const certificates = getenv("SSL_CERT_FILE");
    const std::string range = std::to_string(rangeStart) + "-";
    return Set(CURLOPT_URL, m_address.c_str()) && Set(CURLOPT_PROTOCOLS_STR, Protocols) &&
           Set(CURLOPT_REDIR_PROTOCOLS_STR, Protocols) && Set(CURLOPT_FOLLOWLOCATION, 1L) &&
           Set(CURLOPT_MAXREDIRS, MaximumRedirects) && Set(CURLOPT_SSL_VERIFYPEER, 1L) && Set(CURLOPT_SSL_VERIFYHOST, 2L) &&
           (certificates == nullptr || *certificates == '\0' || Set(CURLOPT_CAINFO, certificates)) &&
           // The streams of HTTP/2 share a window of many megabytes, which the library would hold while nobody reads.
           Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1)) && Set(CURLOPT_HTTP_CONTENT_DECODING, 0L) &&
           Set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L) && Set(CURLOPT_NOSIGNAL, 1L) && Set(CURLOPT_USERAGENT, UserAgent) &&
           Set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(m_timeout > 0 ? m_timeout : INT32_MAX)) &&
           Set(CURLOPT_ERRORBUFFER, m_error) && Set(CURLOPT_HTTPHEADER, m_headers) && Set(CURLOPT_HEADERFUNCTION, &OnHeader) &&
           Set(CURLOPT_HEADERDATA, this) && Set(CURLOPT_WRITEFUNCTION, &OnBody) && Set(CURLOPT_WRITEDATA, this) &&
           (rangeStart <= 0 || Set(CURLOPT_RANGE, range.c_str())) && SetBody(request);
}

bool CTransfer::SetBody(const CRequest& request)
{
    m_upload = static_cast<const char*>(request.GetBody());
    m_uploadSize = request.GetBodySize();
    m_uploadPosition = 0;
    const curl_off_t size = m_uploadSize;
    switch (request.GetMethod())
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
        const CURLcode result = m_library->curl_easy_pause(m_handle, CURLPAUSE_CONT);
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
    ZVElapsedTime sinceProgress;
    int64_t progress = -1;
    while (m_isRunning && !condition())
    {
        if (!Advance() || condition())
            return;
        const int64_t reached = GetProgress();
        if (reached != progress)
            sinceProgress = ZVElapsedTime();
        progress = reached;
        const int32_t left = m_timeout > 0 ? m_timeout - sinceProgress.GetMilliseconds() : MaximumWait;
        if (left <= 0)
        {
            Fail("nothing came in time");
            return;
        }
        curl_waitfd wakeUp = {m_wakeUp, CURL_WAIT_POLLIN, 0};
        m_library->curl_multi_poll(m_multi, &wakeUp, m_wakeUp == -1 ? 0 : 1, std::min(left, MaximumWait), nullptr);
    }
}

// One step without waiting. False when the exchange has ended.
bool CTransfer::Advance()
{
    if (m_isCancelled)
        Fail("cancelled");
    int running = 0;
    if (m_isRunning && m_library->curl_multi_perform(m_multi, &running) != CURLM_OK)
        Fail("libcurl cannot go on");
    if (m_isRunning)
        TakeMessages();
    return m_isRunning;
}

void CTransfer::TakeMessages()
{
    int left = 0;
    const CURLMsg* const message = m_library->curl_multi_info_read(m_multi, &left);
    if (message == nullptr || message->msg != CURLMSG_DONE)
        return;
    const CURLcode result = message->data.result;
    if (result != CURLE_OK)
        Fail(m_error[0] != '\0' ? m_error : m_library->curl_easy_strerror(result));
    else
    {
        NoteLocation();
        m_isRunning = false;
    }
}

// A number that is another one after each sign of life: a connection, a redirect, sent and received bytes.
int64_t CTransfer::GetProgress() const
{
    const auto connected = GetInformation<curl_off_t>(*m_library, m_handle, CURLINFO_PRETRANSFER_TIME_T) > 0 ? 1 : 0;
    return connected + GetInformation<long>(*m_library, m_handle, CURLINFO_REDIRECT_COUNT) +
           GetInformation<curl_off_t>(*m_library, m_handle, CURLINFO_SIZE_UPLOAD_T) + m_received;
}

void CTransfer::Fail(const char* reason)
{
    Source.Log("%s: %s", CResourceName::GetLoggedAddress(m_address).c_str(), reason);
    if (m_isRunning)
        NoteLocation();
    m_hasFailed = true;
    m_isRunning = false;
}

void CTransfer::NoteLocation()
{
    m_location = m_answer.GetValue("Location");
    const char* address = nullptr;
    if (m_location.empty() && GetInformation<long>(*m_library, m_handle, CURLINFO_REDIRECT_COUNT) > 0 &&
        m_library->curl_easy_getinfo(m_handle, CURLINFO_EFFECTIVE_URL, &address) == CURLE_OK && address != nullptr)
        m_location = address;
}

void CTransfer::Stop()
{
    m_isRunning = false;
    m_isPaused = false;
    m_pending.clear();
    m_pendingStart = 0;
    if (m_handle != nullptr)
        m_library->curl_multi_remove_handle(m_multi, m_handle);
    if (m_headers != nullptr)
        m_library->curl_slist_free_all(m_headers);
    m_headers = nullptr;
}

void CTransfer::Reset()
{
    Stop();
    m_answer = {};
    m_location.clear();
    m_error[0] = '\0';
    m_hasFailed = false;
    m_hasBody = false;
    m_received = 0;
}

size_t CTransfer::OnHeader(char* bytes, size_t size, size_t count, void* transfer)
{
    CTransfer& self = *static_cast<CTransfer*>(transfer);
    const size_t length = size * count;
    self.m_received += static_cast<int64_t>(length);
    try
    {
        // What comes behind the body belongs to its framing.
        return self.m_hasBody || self.m_answer.AddLine({bytes, length}) ? length : 0;
    }
    catch (const std::bad_alloc&)
    {
        return 0;
    }
}

size_t CTransfer::OnBody(char* bytes, size_t size, size_t count, void* transfer)
{
    CTransfer& self = *static_cast<CTransfer*>(transfer);
    const size_t length = size * count;
    self.m_hasBody = true;
    if (self.m_room == 0)
    {
        self.m_isPaused = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    const size_t taken = std::min(length, self.m_room);
    try
    {
        self.m_pending.assign(bytes + taken, length - taken);
        self.m_pendingStart = 0;
    }
    catch (const std::bad_alloc&)
    {
        return 0;
    }
    memcpy(self.m_target, bytes, taken);
    self.m_target += taken;
    self.m_room -= taken;
    self.m_received += static_cast<int64_t>(length);
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
