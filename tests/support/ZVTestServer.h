#pragma once

#include "core/string/ZVString.h"
#include "system/library/ZVDescriptor.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// One request as the test server received it.
struct ZVTestRequest
{
    std::string Method;
    // What follows the method: a path with its query, or a whole address when the server is used as a proxy.
    std::string Target;
    // "Name: value", in the order in which they came.
    std::vector<std::string> Headers;
    std::string Body;

    // The value of the first header with a name, in any case; empty when there is none.
    std::string GetHeader(const std::string& name) const;
};

// What the test server answers; by default a 200 with the body and its length.
struct ZVTestAnswer
{
    int Status = 200;
    // Lines without their ends, sent after those that the server makes: "Location: /there", "Content-Encoding: gzip".
    std::vector<std::string> Headers {};
    std::string Body {};

    // A request with a Range header gets the 206 or 416 that it asks for.
    bool AnswersRanges = false;
    // The body is sent in chunks and without a length.
    bool IsChunked = false;
    // The body is sent without a length and ends with the connection.
    bool HidesLength = false;
    // The connection is closed after that many bytes of the body, a multiple of 1000; the length is that of the whole body.
    int64_t CutAfter = -1;
    // Waits before the status line, and again after that many bytes of the body, a multiple of 1000.
    int DelayMilliseconds = 0;
    int64_t StallAfter = -1;
    int StallMilliseconds = 0;
    // That many interim answers go out first.
    int InterimAnswers = 0;
    // Waits before each interim answer and before each thousand bytes of the body.
    int PieceMilliseconds = 0;
};

// An HTTP/1.1 server on a free port of the loopback address, as long as the object lives. Each connection has a thread of its own
// and stays open for further requests. HEAD gets the headers that GET would. A target without an answer gets a 404. Meanwhile the
// variable no_proxy names the loopback address, so that no proxy gets in between. May be called from any thread.
class ZVTestServer
{
public:
    ZVTestServer();
    ~ZVTestServer();

    // What a target such as "/file.txt" is answered with: always the same, or one answer after the other, the last one repeated.
    void SetAnswer(const std::string& target, const ZVTestAnswer& answer) { SetAnswers(target, {answer}); }
    void SetAnswers(const std::string& target, const std::vector<ZVTestAnswer>& answers);

    // The address of a target: "http://127.0.0.1:port/file.txt".
    ZVString GetURL(const std::string& target) const;

    // The requests so far, or those for one target. A request is there before its answer is sent.
    std::vector<ZVTestRequest> GetRequests(const std::string& target = "") const;
    // Bytes of bodies that the system was given so far.
    int64_t GetSentBodyBytes() const { return m_sentBodyBytes; }

private:
    using Stream = std::unique_ptr<FILE, int (*)(FILE*)>;

    void Accept();
    void Serve(FILE* stream);
    ZVTestAnswer FindAnswer(const ZVTestRequest& request);
    bool Send(int socket, const ZVTestRequest& request, ZVTestAnswer answer);
    bool SendBody(int socket, const ZVTestAnswer& answer);

    ZVDescriptor m_listener;
    int m_port = 0;
    mutable std::mutex m_mutex;
    std::map<std::string, std::vector<ZVTestAnswer>> m_answers;
    std::vector<ZVTestRequest> m_requests;
    std::atomic<int64_t> m_sentBodyBytes = 0;
    std::vector<std::pair<Stream, std::jthread>> m_connections;
    std::thread m_acceptor;
};
