#include "support/ZVTestServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sstream>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
// The size of a chunk, and of what one call of the system is given.
constexpr size_t PieceSize = 1000;

bool SendAll(int socket, const std::string& bytes)
{
    return send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

// False when the connection ends before the time is over.
bool Wait(int socket, int milliseconds)
{
    pollfd state {socket, POLLRDHUP, 0};
    return milliseconds == 0 || poll(&state, 1, milliseconds) == 0;
}

// False when the client has closed.
bool Receive(FILE* stream, ZVTestRequest& request)
{
    char* line = nullptr;
    size_t capacity = 0;
    while (getline(&line, &capacity, stream) > 2)
        request.Headers.push_back(std::string(line, strcspn(line, "\r")));
    free(line);
    if (request.Headers.empty())
        return false;
    std::istringstream(request.Headers.front()) >> request.Method >> request.Target;
    request.Headers.erase(request.Headers.begin());

    request.Body.resize(strtoul(request.GetHeader("Content-Length").c_str(), nullptr, 10));
    return fread(request.Body.data(), 1, request.Body.size(), stream) == request.Body.size();
}

// Applies the Range header of a request, which may have the form "bytes=first-".
void CutToRange(const ZVTestRequest& request, ZVTestAnswer& answer)
{
    const std::string range = request.GetHeader("Range");
    size_t first = 0;
    if (!answer.AnswersRanges || answer.Status != 200 || sscanf(range.c_str(), "bytes=%zu-", &first) != 1)
        return;
    const size_t size = answer.Body.size();
    answer.Status = first < size ? 206 : 416;
    const std::string places = first < size ? std::to_string(first) + "-" + std::to_string(size - 1) : "*";
    answer.Headers.push_back("Content-Range: bytes " + places + "/" + std::to_string(size));
    answer.Body.erase(0, std::min(first, size));
}
}

std::string ZVTestRequest::GetHeader(const std::string& name) const
{
    for (const std::string& line : Headers)
        if (strncasecmp(line.c_str(), (name + ":").c_str(), name.size() + 1) == 0)
            return line.substr(std::min(name.size() + 2, line.size()));
    return "";
}

ZVTestServer::ZVTestServer()
{
    setenv("no_proxy", "127.0.0.1,localhost", 1);
    m_listener = ZVDescriptor(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(m_listener.Get(), reinterpret_cast<sockaddr*>(&address), size), 0);
    EXPECT_EQ(listen(m_listener.Get(), SOMAXCONN), 0);
    EXPECT_EQ(getsockname(m_listener.Get(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { Accept(); });
}

ZVTestServer::~ZVTestServer()
{
    shutdown(m_listener.Get(), SHUT_RDWR);
    m_acceptor.join();
    for (const auto& connection : m_connections)
        shutdown(fileno(connection.first.get()), SHUT_RDWR);
    unsetenv("no_proxy");
}

void ZVTestServer::SetAnswers(const std::string& target, const std::vector<ZVTestAnswer>& answers)
{
    const std::lock_guard lock(m_mutex);
    m_answers[target] = answers;
}

ZVString ZVTestServer::GetURL(const std::string& target) const
{
    return ZVFormat(L"http://127.0.0.1:%d%s", m_port, target.c_str());
}

std::vector<ZVTestRequest> ZVTestServer::GetRequests(const std::string& target) const
{
    const std::lock_guard lock(m_mutex);
    std::vector<ZVTestRequest> requests = m_requests;
    std::erase_if(requests, [&](const ZVTestRequest& request) { return !target.empty() && request.Target != target; });
    return requests;
}

void ZVTestServer::Accept()
{
    for (int socket = 0; (socket = accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC)) >= 0;)
    {
        const int yes = 1;
        setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        FILE* const stream = fdopen(socket, "r");
        m_connections.emplace_back(Stream(stream, fclose), [this, stream] { Serve(stream); });
    }
}

void ZVTestServer::Serve(FILE* stream)
{
    for (ZVTestRequest request; Receive(stream, request); request = {})
        if (!Send(fileno(stream), request, FindAnswer(request)))
            break;
    shutdown(fileno(stream), SHUT_RDWR);
}

ZVTestAnswer ZVTestServer::FindAnswer(const ZVTestRequest& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(request);
    std::vector<ZVTestAnswer>& answers = m_answers[request.Target];
    if (answers.empty())
        return {.Status = 404, .Body = "not here"};
    const ZVTestAnswer answer = answers.front();
    if (answers.size() > 1)
        answers.erase(answers.begin());
    return answer;
}

// True when the connection can go on with another request.
bool ZVTestServer::Send(int socket, const ZVTestRequest& request, ZVTestAnswer answer)
{
    if (!Wait(socket, answer.DelayMilliseconds))
        return false;
    for (int count = 0; count < answer.InterimAnswers; ++count)
        if (!Wait(socket, answer.PieceMilliseconds) || !SendAll(socket, "HTTP/1.1 102 Processing\r\n\r\n"))
            return false;
    CutToRange(request, answer);
    const bool hasBody = answer.Status >= 200 && answer.Status != 204 && answer.Status != 304;
    std::string head = "HTTP/1.1 " + std::to_string(answer.Status) + " Test\r\n";
    if (hasBody && answer.IsChunked)
        head += "Transfer-Encoding: chunked\r\n";
    else if (hasBody && answer.HidesLength)
        head += "Connection: close\r\n";
    else if (hasBody)
        head += "Content-Length: " + std::to_string(answer.Body.size()) + "\r\n";
    for (const std::string& line : answer.Headers)
        head += line + "\r\n";
    if (!SendAll(socket, head + "\r\n"))
        return false;
    return !hasBody || request.Method == "HEAD" || SendBody(socket, answer);
}

bool ZVTestServer::SendBody(int socket, const ZVTestAnswer& answer)
{
    const int64_t size = static_cast<int64_t>(answer.Body.size());
    for (int64_t sent = 0; sent != answer.CutAfter;)
    {
        const bool stalls = sent == answer.StallAfter;
        if (!Wait(socket, stalls ? answer.StallMilliseconds : answer.PieceMilliseconds))
            return false;
        if (sent == size)
            return answer.IsChunked ? SendAll(socket, "0\r\n\r\n") : !answer.HidesLength;
        std::string piece = answer.Body.substr(static_cast<size_t>(sent), PieceSize);
        sent += static_cast<int64_t>(piece.size());
        m_sentBodyBytes += static_cast<int64_t>(piece.size());
        if (answer.IsChunked)
            piece = (std::ostringstream() << std::hex << piece.size() << "\r\n" << piece << "\r\n").str();
        if (!SendAll(socket, piece))
            return false;
    }
    return false;
}
