#pragma once

#include "core/string/ZVString.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// One request as the test server received it.
struct ZVTestRequest
{
    std::string Method;
    // What stands behind the method: a path with its query, or a whole address when the server is used as a proxy.
    std::string Target;
    // "Name: value", in the order in which they came.
    std::vector<std::string> Headers;
    std::string Body;

    // The value of the first header of a name, whose case does not count; empty without one.
    std::string GetHeader(const std::string& name) const;
};

// What the test server answers. The plain one is a 200 with the body and its length.
struct ZVTestAnswer
{
    int Status = 200;
    // Lines without their end, sent behind those that the server makes: "Location: /there", "Content-Encoding: gzip".
    std::vector<std::string> Headers {};
    std::string Body {};

    // A request with a Range header gets the 206 or 416 that it asks for.
    bool AnswersRanges = false;
    // The body goes out in chunks and without a length.
    bool IsChunked = false;
    // The body goes out without a length and ends with the connection.
    bool HidesLength = false;
    // The connection is closed when so many bytes of the body are out, thousands of them; the length still tells of all.
    int64_t CutAfter = -1;
    // Waits in front of the status line, and again when so many thousands of bytes of the body are out.
    int DelayMilliseconds = 0;
    int64_t StallAfter = -1;
    int StallMilliseconds = 0;
    // That many interim answers go out first.
    int InterimAnswers = 0;
    // Waits before each interim answer and before each thousand bytes of the body.
    int PieceMilliseconds = 0;
};

// An HTTP/1.1 server on a free port of the loopback address, for the life of the object. Each connection has a thread of its
// own and stays open for further requests. HEAD gets the headers that GET would. A target without an answer gets a 404. The
// variable no_proxy names the loopback address while a server lives, so that a proxy in the environment does not get in
// between. All of it may be called from any thread.
class ZVTestServer
{
public:
    ZVTestServer();
    ~ZVTestServer();

    // What a target is answered with, "/file.txt" for one: always the same, or one after the other with the last repeated.
    void SetAnswer(const std::string& target, const ZVTestAnswer& answer) { SetAnswers(target, {answer}); }
    void SetAnswers(const std::string& target, const std::vector<ZVTestAnswer>& answers);

    // The address of a target: "http://127.0.0.1:port/file.txt".
    ZVString GetURL(const std::string& target) const;

    // The requests so far, or those for one target. A request is there before its answer goes out.
    std::vector<ZVTestRequest> GetRequests(const std::string& target = "") const;
    // Bytes of bodies that were given to the system so far.
    int64_t GetSentBodyBytes() const { return m_sentBodyBytes; }

private:
    void Accept();
    void Serve(FILE* stream);
    ZVTestAnswer FindAnswer(const ZVTestRequest& request);
    bool Send(int socket, const ZVTestRequest& request, ZVTestAnswer answer);
    bool SendBody(int socket, const ZVTestAnswer& answer);

    int m_listener = -1;
    int m_port = 0;
    mutable std::mutex m_mutex;
    std::map<std::string, std::vector<ZVTestAnswer>> m_answers;
    std::vector<ZVTestRequest> m_requests;
    std::atomic<int64_t> m_sentBodyBytes = 0;
    std::vector<std::pair<FILE*, std::thread>> m_connections;
    std::thread m_acceptor;
};
