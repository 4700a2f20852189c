#pragma once

#include "siblings/reader/internet/CAnswer.h"
#include "siblings/reader/internet/CCurlLibrary.h"

#include <atomic>
#include <cstdint>
#include <string>

class CRequest;

// One exchange with an HTTP server at a time: a request, the redirects, and the body of the last answer as a stream. libcurl
// works on the thread of the caller and only while a call runs here; between calls the connection stands still, so that at
// most one block of the body is held. All of it belongs to one thread, but for Cancel.
class CTransfer
{
public:
    CTransfer();
    ~CTransfer();
    CTransfer(const CTransfer&) = delete;
    CTransfer& operator=(const CTransfer&) = delete;

    // The longest time in milliseconds to wait for a connection, and then for the next bytes; 0 or below is no limit.
    void SetTimeout(int32_t milliseconds) { m_timeout = milliseconds; }
    // Sends a request and waits until the head of its last answer is there; what ran before is stopped. With asksAgain the
    // conditions and ranges among the caller's headers are left out. A rangeStart above 0 asks for the bytes from there on.
    // False, with the reason logged, when there is no such head; what goes wrong behind it is a matter of Read.
    bool Start(const std::string& address, const CRequest& request, int64_t rangeStart, bool asksAgain);
    // The next bytes of the body; fewer than count at its end and after a failure.
    int64_t Read(void* bytes, int64_t count);
    // True when the body could not be read to its end; the reason is logged.
    bool HasFailed() const { return m_hasFailed; }
    // Ends the exchange; what was told of the answer stays.
    void Stop();
    // Ends the exchange and forgets it.
    void Reset();
    // Ends a running call soon, and all later ones at once, with a failure.
    void Cancel();

    // What came in of the last answer, empty before the first.
    const CAnswer& GetAnswer() const { return m_answer; }
    // Where the exchange was led to: the address of the last redirect, or the "Location" of an answer that was not followed.
    std::string GetLocation() const { return m_location; }

private:
    static size_t OnHeader(char* bytes, size_t size, size_t count, void* transfer);
    static size_t OnBody(char* bytes, size_t size, size_t count, void* transfer);
    static size_t OnUpload(char* bytes, size_t size, size_t count, void* transfer);
    static int OnUploadSeek(void* transfer, curl_off_t offset, int origin);

    bool Prepare(const CRequest& request, int64_t rangeStart, bool asksAgain);
    bool SetOptions(const CRequest& request, int64_t rangeStart);
    bool SetBody(const CRequest& request);
    template <class Value>
    bool Set(CURLoption option, Value value);
    bool HasHead() const { return m_hasBody || m_answer.IsFinal(); }
    int64_t TakePending(void* bytes, int64_t count);
    // Works until the condition holds or the exchange has ended.
    template <class Condition>
    void Run(Condition condition);
    bool Advance();
    void TakeMessages();
    int64_t GetProgress() const;
    void Fail(const char* reason);
    void NoteLocation();

    const CCurlLibrary* m_library = nullptr;
    CURLM* m_multi = nullptr;
    CURL* m_handle = nullptr;
    curl_slist* m_headers = nullptr;
    bool m_isRunning = false;
    bool m_isPaused = false;
    bool m_hasFailed = false;
    bool m_hasBody = false;
    int32_t m_timeout = 0;
    int64_t m_received = 0;
    int m_wakeUp = -1;
    std::atomic<bool> m_isCancelled = false;

    std::string m_address;
    CAnswer m_answer;
    std::string m_location;
    char m_error[CURL_ERROR_SIZE] = "";

    // Where the body goes while Read runs, and what of the last block found no room.
    char* m_target = nullptr;
    size_t m_room = 0;
    std::string m_pending;
    size_t m_pendingStart = 0;

    const char* m_upload = nullptr;
    int64_t m_uploadSize = 0;
    int64_t m_uploadPosition = 0;
};
