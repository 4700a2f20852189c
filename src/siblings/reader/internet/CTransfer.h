#pragma once

#include "siblings/reader/internet/CAnswer.h"
#include "siblings/reader/internet/CCurlLibrary.h"
#include "siblings/reader/internet/CRedirect.h"
#include "siblings/reader/internet/CTransferPace.h"
#include "system/library/ZVDescriptor.h"

#include <atomic>
#include <cstdint>
#include <string>

// What is asked of a server in one exchange.
struct CExchange
{
    const CRequest& Request;
    // Above 0 it asks for the bytes from this place on.
    int64_t RangeStart = 0;
    // The groups of headers, as for CRequest::GetHeaders.
    uint32_t LeftOut = 0;
};

// One exchange with an HTTP server at a time: a request, the redirects, and the body of the last answer as a stream. libcurl
// works on the thread of the caller and only while a call runs here; between calls the connection stands still, so that at
// most one block of the body is held. All of it belongs to one thread, except Cancel.
class CTransfer
{
public:
    CTransfer();
    ~CTransfer() { Stop(); }
    CTransfer(const CTransfer&) = delete;
    CTransfer& operator=(const CTransfer&) = delete;

    // The longest time in milliseconds to wait for a connection, and then for the next bytes; 0 or below is no limit. Interim
    // answers do not count as bytes.
    void SetTimeout(int32_t milliseconds) { m_pace.SetTimeout(milliseconds); }
    void SetLimits(const CTransferLimits& limits) { m_pace.SetLimits(limits); }
    // Sends a request and waits until the head of its last answer is there; what ran before is stopped. False, with the reason
    // logged, when no such head comes; what goes wrong after it is a matter of Read.
    bool Start(const std::string& address, const CExchange& exchange);
    // The next bytes of the body; fewer than count at its end and after a failure.
    int64_t Read(void* bytes, int64_t count);
    // True when the body could not be read to its end; the reason is logged.
    bool HasFailed() const { return m_hasFailed; }
    // Ends the exchange; what is known of the answer stays.
    void Stop();
    // Ends the exchange and forgets it.
    void Reset();
    // Ends a running call soon, and all later ones at once, with a failure.
    void Cancel();

    // What came in of the last answer, empty before the first.
    const CAnswer& GetAnswer() const { return m_answer; }
    // Where the exchange was led to: the "Location" of the last answer, and if it has none the address of the last redirect.
    std::string GetLocation() const;

private:
    static size_t OnHeader(char* bytes, size_t size, size_t count, void* transfer);
    static size_t OnBody(char* bytes, size_t size, size_t count, void* transfer);
    static size_t OnUpload(char* bytes, size_t size, size_t count, void* transfer);
    static int OnUploadSeek(void* transfer, curl_off_t offset, int origin);

    void SendHop(const CExchange& exchange);
    void FollowRedirect(const CExchange& exchange, int earlierRedirects);
    bool Prepare(const CExchange& exchange);
    bool AddHeaders(const CExchange& exchange);
    bool SetOptions(int64_t rangeStart);
    bool SetBody(const CRequest& request);
    template <class Value>
    bool Set(CURLoption option, Value value);
    bool HasHead() const { return m_hasBody || m_answer.IsFinal(); }
    size_t TakeBody(const char* bytes, size_t length);
    int64_t TakePending(void* bytes, int64_t count);
    // Works until the condition holds or the exchange has ended.
    template <class Condition>
    void Run(Condition condition);
    bool Advance();
    void TakeMessages();
    CTransferPace::State GetPaceState() const;
    void Fail(const char* reason);

    const CCurlLibrary* m_library = nullptr;
    // Must be freed after the handle that works in it.
    CCurlMultiPointer m_multi;
    CCurlListPointer m_headers;
    CCurlEasyPointer m_handle;
    bool m_isRunning = false;
    bool m_isPaused = false;
    bool m_hasFailed = false;
    bool m_hasBody = false;
    CTransferPace m_pace;
    ZVDescriptor m_wakeUp;
    std::atomic<bool> m_isCancelled = false;

    std::string m_address;
    CHop m_hop;
    bool m_isRedirected = false;
    CAnswer m_answer;
    char m_error[CURL_ERROR_SIZE] = "";
    // Why a call-back did not take what libcurl gave it, or null.
    const char* m_refusal = nullptr;
    // Bytes of the answer, its head included, and of the body alone.
    int64_t m_received = 0;
    int64_t m_bodyBytes = 0;

    // Where the body goes while Read runs, and the rest of the last block, for which there was no room.
    char* m_target = nullptr;
    size_t m_room = 0;
    std::string m_pending;
    size_t m_pendingStart = 0;

    const char* m_upload = nullptr;
    int64_t m_uploadSize = 0;
    int64_t m_uploadPosition = 0;
};
