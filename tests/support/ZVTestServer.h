#pragma once

#include "core/string/ZVString.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
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
    bool HasHeader(const std::string& name) const { return FindHeader(name) != nullptr; }

private:
    const std::string* FindHeader(const std::string& name) const;
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
    // The body goes out in chunks of 1000 bytes and without a length.
    bool IsChunked = false;
    // The body goes out without a length and ends with the connection.
    bool HidesLength = false;
    // The connection is closed when so many bytes of the body are out, or chunks with so many; the length still tells of all.
    int64_t CutAfter = -1;
    // Waits in front of the status line, and again when so many bytes of the body are out.
    int DelayMilliseconds = 0;
    int64_t StallAfter = -1;
    int StallMilliseconds = 0;
};

// An HTTP/1.1 server on a free port of the loopback address, for the life of the object. Each connection has a thread of its
// own and stays open for further requests. HEAD gets the headers that GET would. A target without an answer gets a 404. The
// variable no_proxy names the loopback address while a server lives, so that a proxy in the environment does not get in
// between. All of it may be called from any thread.
class ZVTestServer
{
public:
    // Makes the answer to one request; called on the thread of a connection, one at a time, and must not call the server.
    using Handler = std::function<ZVTestAnswer(const ZVTestRequest& request)>;

    ZVTestServer();
    ~ZVTestServer();
    ZVTestServer(const ZVTestServer&) = delete;
    ZVTestServer& operator=(const ZVTestServer&) = delete;

    // What a target is answered with, "/file.txt" for one: always the same, one after the other with the last repeated, or as
    // a function decides.
    void SetAnswer(const std::string& target, const ZVTestAnswer& answer);
    void SetAnswers(const std::string& target, const std::vector<ZVTestAnswer>& answers);
    void SetHandler(const std::string& target, const Handler& handler);

    int GetPort() const { return m_port; }
    // The address of a target: "http://127.0.0.1:port/file.txt".
    ZVString GetURL(const std::string& target) const;

    // The requests so far, or those for one target. A request is there before its answer goes out.
    std::vector<ZVTestRequest> GetRequests() const;
    std::vector<ZVTestRequest> GetRequests(const std::string& target) const;
    // Bytes of bodies that the system has taken so far.
    int64_t GetSentBodyBytes() const;

    // The bytes as a valid gzip file (RFC 1952) that is not smaller than they are.
    static std::string Gzip(const std::string& bytes);

private:
    void Accept();
    void Serve(int socket);
    ZVTestAnswer FindAnswer(const ZVTestRequest& request);
    bool Send(int socket, const ZVTestRequest& request, ZVTestAnswer answer);
    bool SendBody(int socket, const ZVTestAnswer& answer);
    // False when the server ends meanwhile.
    bool Wait(int milliseconds);

    int m_listener = -1;
    int m_port = 0;
    mutable std::mutex m_mutex;
    std::condition_variable m_stopped;
    bool m_isStopping = false;
    std::map<std::string, Handler> m_handlers;
    std::vector<ZVTestRequest> m_requests;
    int64_t m_sentBodyBytes = 0;
    std::vector<int> m_sockets;
    std::vector<std::thread> m_threads;
    std::thread m_acceptor;
};
