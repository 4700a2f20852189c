#include "support/ZVTestServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
constexpr size_t ChunkSize = 1000;
// What one call of the system gets when nothing else cuts a body.
constexpr size_t PieceSize = 0x10000;

bool SendAll(int socket, const char* bytes, size_t count)
{
    while (count > 0)
    {
        const ssize_t sent = send(socket, bytes, count, MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes += sent;
        count -= static_cast<size_t>(sent);
    }
    return true;
}

bool SendAll(int socket, const std::string& text)
{
    return SendAll(socket, text.data(), text.size());
}

// Receives until there are so many bytes. False when the client has closed.
bool ReceiveUpTo(int socket, std::string& received, size_t count)
{
    char bytes[0x4000];
    while (received.size() < count)
    {
        const ssize_t size = recv(socket, bytes, sizeof bytes, 0);
        if (size <= 0)
            return false;
        received.append(bytes, static_cast<size_t>(size));
    }
    return true;
}

// Applies the Range header of a request, of which the form "bytes=first-[last]" is understood.
void CutToRange(const ZVTestRequest& request, ZVTestAnswer& answer)
{
    const std::string range = request.GetHeader("Range");
    if (!answer.AnswersRanges || answer.Status != 200 || range.compare(0, 6, "bytes=") != 0)
        return;
    const std::string size = std::to_string(answer.Body.size());
    char* end = nullptr;
    const size_t first = strtoul(range.c_str() + 6, &end, 10);
    size_t last = *end == '-' && end[1] != '\0' ? strtoul(end + 1, nullptr, 10) : answer.Body.size() - 1;
    if (first >= answer.Body.size())
    {
        answer.Status = 416;
        answer.Headers.push_back("Content-Range: bytes */" + size);
        answer.Body.clear();
        return;
    }
    last = std::min(last, answer.Body.size() - 1);
    answer.Status = 206;
    answer.Headers.push_back("Content-Range: bytes " + std::to_string(first) + "-" + std::to_string(last) + "/" + size);
    answer.Body = answer.Body.substr(first, last - first + 1);
}

uint32_t GetCRC32(const std::string& bytes)
{
    uint32_t crc = ~0u;
    for (const char byte : bytes)
    {
        crc ^= static_cast<uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xedb88320 : crc >> 1;
    }
    return ~crc;
}

void AppendLittleEndian(std::string& bytes, size_t value, int count)
{
    for (int index = 0; index < count; ++index)
        bytes.push_back(static_cast<char>(value >> 8 * index & 0xff));
}
}

std::string ZVTestRequest::GetHeader(const std::string& name) const
{
    for (const std::string& line : Headers)
        if (strncasecmp(line.c_str(), (name + ":").c_str(), name.size() + 1) == 0)
            return line.substr(std::min(line.find_first_not_of(' ', name.size() + 1), line.size()));
    return {};
}

bool ZVTestRequest::HasHeader(const std::string& name) const
{
    return std::any_of(Headers.begin(), Headers.end(),
                       [&](const std::string& line)
                       { return strncasecmp(line.c_str(), (name + ":").c_str(), name.size() + 1) == 0; });
}

ZVTestServer::ZVTestServer()
{
    setenv("no_proxy", "127.0.0.1,localhost", 1);
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(m_listener, SOMAXCONN) != 0 ||
        getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
    {
        ADD_FAILURE() << "the test server has no port";
        return;
    }
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { Accept(); });
}

ZVTestServer::~ZVTestServer()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
        for (const Connection& connection : m_connections)
            shutdown(connection.Socket, SHUT_RDWR);
    }
    m_stopped.notify_all();
    shutdown(m_listener, SHUT_RDWR);
    if (m_acceptor.joinable())
        m_acceptor.join();
    for (Connection& connection : m_connections)
    {
        connection.Thread.join();
        close(connection.Socket);
    }
    close(m_listener);
    unsetenv("no_proxy");
}

void ZVTestServer::SetAnswer(const std::string& target, const ZVTestAnswer& answer)
{
    SetAnswers(target, {answer});
}

void ZVTestServer::SetAnswers(const std::string& target, const std::vector<ZVTestAnswer>& answers)
{
    const auto next = std::make_shared<size_t>(0);
    SetHandler(target, [answers, next](const ZVTestRequest&) { return answers[std::min((*next)++, answers.size() - 1)]; });
}

void ZVTestServer::SetHandler(const std::string& target, const Handler& handler)
{
    const std::lock_guard lock(m_mutex);
    m_handlers[target] = handler;
}

ZVString ZVTestServer::GetURL(const std::string& target) const
{
    return ZVFormat(L"http://127.0.0.1:%d%s", m_port, target.c_str());
}

std::vector<ZVTestRequest> ZVTestServer::GetRequests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::vector<ZVTestRequest> ZVTestServer::GetRequests(const std::string& target) const
{
    std::vector<ZVTestRequest> requests = GetRequests();
    std::erase_if(requests, [&](const ZVTestRequest& request) { return request.Target != target; });
    return requests;
}

int64_t ZVTestServer::GetSentBodyBytes() const
{
    const std::lock_guard lock(m_mutex);
    return m_sentBodyBytes;
}

int ZVTestServer::GetConnectionCount() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_connections.size());
}

void ZVTestServer::Accept()
{
    for (;;)
    {
        const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            return;
        const int yes = 1;
        setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        const std::lock_guard lock(m_mutex);
        if (m_isStopping)
        {
            close(socket);
            return;
        }
        Connection& connection = m_connections.emplace_back();
        connection.Socket = socket;
        connection.Thread = std::thread([this, socket] { Serve(socket); });
    }
}

void ZVTestServer::Serve(int socket)
{
    std::string received;
    ZVTestRequest request;
    while (Receive(socket, received, request) && Send(socket, request, FindAnswer(request)))
        request = {};
    // The number stays taken until the server ends, so that nobody else's socket is shut down by it.
    shutdown(socket, SHUT_RDWR);
}

bool ZVTestServer::Receive(int socket, std::string& received, ZVTestRequest& request) const
{
    size_t headerEnd;
    while ((headerEnd = received.find("\r\n\r\n")) == std::string::npos)
        if (!ReceiveUpTo(socket, received, received.size() + 1))
            return false;
    for (size_t start = 0; start < headerEnd + 2;)
    {
        const size_t end = received.find("\r\n", start);
        request.Headers.push_back(received.substr(start, end - start));
        start = end + 2;
    }
    received.erase(0, headerEnd + 4);

    const std::string first = request.Headers.front();
    request.Headers.erase(request.Headers.begin());
    request.Method = first.substr(0, first.find(' '));
    request.Target = first.substr(std::min(request.Method.size() + 1, first.size()));
    request.Target.erase(std::min(request.Target.find(' '), request.Target.size()));

    if (request.HasHeader("Expect") && !SendAll(socket, "HTTP/1.1 100 Continue\r\n\r\n"))
        return false;
    const size_t bodySize = strtoul(request.GetHeader("Content-Length").c_str(), nullptr, 10);
    if (!ReceiveUpTo(socket, received, bodySize))
        return false;
    request.Body = received.substr(0, bodySize);
    received.erase(0, bodySize);
    return true;
}

ZVTestAnswer ZVTestServer::FindAnswer(const ZVTestRequest& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(request);
    const auto handler = m_handlers.find(request.Target);
    if (handler != m_handlers.end())
        return handler->second(request);
    ZVTestAnswer missing;
    missing.Status = 404;
    missing.Body = "not here";
    return missing;
}

// True when the connection can serve another request.
bool ZVTestServer::Send(int socket, const ZVTestRequest& request, ZVTestAnswer answer)
{
    if (!Wait(answer.DelayMilliseconds))
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
    const size_t none = answer.Body.size() + 1;
    const size_t stall = answer.StallAfter < 0 ? none : static_cast<size_t>(answer.StallAfter);
    const size_t cut = answer.CutAfter < 0 ? none : static_cast<size_t>(answer.CutAfter);
    for (size_t start = 0;;)
    {
        if (start == stall && !Wait(answer.StallMilliseconds))
            return false;
        if (start == cut)
            return false;
        if (start == answer.Body.size())
            break;
        size_t end = std::min(start + (answer.IsChunked ? ChunkSize : PieceSize), answer.Body.size());
        for (const size_t edge : {stall, cut})
            if (edge > start && edge < end)
                end = edge;
        if (!SendPiece(socket, answer, start, end - start))
            return false;
        start = end;
    }
    return answer.IsChunked ? SendAll(socket, "0\r\n\r\n") : !answer.HidesLength;
}

bool ZVTestServer::SendPiece(int socket, const ZVTestAnswer& answer, size_t start, size_t size)
{
    char prefix[24] = "";
    if (answer.IsChunked)
        snprintf(prefix, sizeof prefix, "%zx\r\n", size);
    if (!SendAll(socket, prefix) || !SendAll(socket, answer.Body.data() + start, size) ||
        (answer.IsChunked && !SendAll(socket, "\r\n")))
        return false;
    const std::lock_guard lock(m_mutex);
    m_sentBodyBytes += static_cast<int64_t>(size);
    return true;
}

bool ZVTestServer::Wait(int milliseconds)
{
    if (milliseconds <= 0)
        return true;
    std::unique_lock lock(m_mutex);
    return !m_stopped.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return m_isStopping; });
}

std::string ZVTestServer::Gzip(const std::string& bytes)
{
    // Method 8, no flags, no time, from Unix (RFC 1952, 2.3); then stored blocks (RFC 1951, 3.2.4).
    std::string file("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10);
    size_t start = 0;
    do
    {
        const size_t size = std::min<size_t>(bytes.size() - start, 0xffff);
        file.push_back(start + size == bytes.size() ? '\1' : '\0');
        AppendLittleEndian(file, size, 2);
        AppendLittleEndian(file, ~size, 2);
        file.append(bytes, start, size);
        start += size;
    } while (start < bytes.size());
    AppendLittleEndian(file, GetCRC32(bytes), 4);
    AppendLittleEndian(file, bytes.size(), 4);
    return file;
}
