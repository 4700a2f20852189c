#include "support/ZVTestServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sstream>
#include <string_view>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
constexpr size_t ChunkSize = 1000;
// What one call of the system gets when nothing else cuts a body.
constexpr size_t PieceSize = 0x10000;

// The system takes all of it unless the connection ends.
bool SendAll(int socket, std::string_view bytes)
{
    return send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

// False when the client has closed.
bool Receive(int socket, FILE* stream, ZVTestRequest& request)
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

    if (request.HasHeader("Expect") && !SendAll(socket, "HTTP/1.1 100 Continue\r\n\r\n"))
        return false;
    request.Body.resize(strtoul(request.GetHeader("Content-Length").c_str(), nullptr, 10));
    return fread(request.Body.data(), 1, request.Body.size(), stream) == request.Body.size();
}

// Applies the Range header of a request, of which the form "bytes=first-[last]" is understood.
void CutToRange(const ZVTestRequest& request, ZVTestAnswer& answer)
{
    const std::string range = request.GetHeader("Range");
    size_t first = 0;
    size_t last = SIZE_MAX;
    if (!answer.AnswersRanges || answer.Status != 200 || sscanf(range.c_str(), "bytes=%zu-%zu", &first, &last) < 1)
        return;
    const size_t size = answer.Body.size();
    last = std::min(last, size - 1);
    answer.Status = first < size ? 206 : 416;
    const std::string places = first < size ? std::to_string(first) + "-" + std::to_string(last) : "*";
    answer.Headers.push_back("Content-Range: bytes " + places + "/" + std::to_string(size));
    answer.Body = first < size ? answer.Body.substr(first, last - first + 1) : "";
}

void AppendLittleEndian(std::string& bytes, size_t value, int count)
{
    for (int index = 0; index < count; ++index)
        bytes.push_back(static_cast<char>(value >> 8 * index & 0xff));
}
}

const std::string* ZVTestRequest::FindHeader(const std::string& name) const
{
    const auto found = std::find_if(Headers.begin(), Headers.end(),
                                    [start = name + ":"](const std::string& line)
                                    { return strncasecmp(line.c_str(), start.c_str(), start.size()) == 0; });
    return found == Headers.end() ? nullptr : &*found;
}

std::string ZVTestRequest::GetHeader(const std::string& name) const
{
    const std::string* const line = FindHeader(name);
    return line == nullptr ? "" : line->substr(std::min(line->find_first_not_of(' ', name.size() + 1), line->size()));
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
        for (const int socket : m_sockets)
            shutdown(socket, SHUT_RDWR);
    }
    m_stopped.notify_all();
    shutdown(m_listener, SHUT_RDWR);
    if (m_acceptor.joinable())
        m_acceptor.join();
    for (std::thread& thread : m_threads)
        thread.join();
    // The numbers stay taken until here, so that nobody else's socket is shut down.
    for (const int socket : m_sockets)
        close(socket);
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

void ZVTestServer::Accept()
{
    for (int socket = 0; (socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;)
    {
        const int yes = 1;
        setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        const std::lock_guard lock(m_mutex);
        m_sockets.push_back(socket);
        if (m_isStopping)
            return;
        m_threads.emplace_back([this, socket] { Serve(socket); });
    }
}

void ZVTestServer::Serve(int socket)
{
    FILE* const stream = fdopen(fcntl(socket, F_DUPFD_CLOEXEC, 0), "r");
    for (ZVTestRequest request; Receive(socket, stream, request); request = {})
        if (!Send(socket, request, FindAnswer(request)))
            break;
    fclose(stream);
    shutdown(socket, SHUT_RDWR);
}

ZVTestAnswer ZVTestServer::FindAnswer(const ZVTestRequest& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(request);
    const auto handler = m_handlers.find(request.Target);
    if (handler != m_handlers.end())
        return handler->second(request);
    return {.Status = 404, .Body = "not here"};
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
    // What is not set lies behind every end.
    const size_t stall = static_cast<size_t>(answer.StallAfter);
    const size_t cut = static_cast<size_t>(answer.CutAfter);
    for (size_t start = 0;;)
    {
        if ((start == stall && !Wait(answer.StallMilliseconds)) || start == cut)
            return false;
        if (start == answer.Body.size())
            break;
        size_t end = std::min(start + (answer.IsChunked ? ChunkSize : PieceSize), answer.Body.size());
        for (const size_t edge : {stall, cut})
            if (edge > start)
                end = std::min(end, edge);
        std::string piece = answer.Body.substr(start, end - start);
        if (answer.IsChunked)
            piece = (std::ostringstream() << std::hex << piece.size() << "\r\n" << piece << "\r\n").str();
        if (!SendAll(socket, piece))
            return false;
        const std::lock_guard lock(m_mutex);
        m_sentBodyBytes += static_cast<int64_t>(end - start);
        start = end;
    }
    return answer.IsChunked ? SendAll(socket, "0\r\n\r\n") : !answer.HidesLength;
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
    constexpr size_t BlockSize = 0xffff;
    std::string file("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10);
    for (size_t start = 0; start == 0 || start < bytes.size(); start += BlockSize)
    {
        const size_t size = std::min(bytes.size() - start, BlockSize);
        file.push_back(start + size == bytes.size() ? '\1' : '\0');
        AppendLittleEndian(file, size, 2);
        AppendLittleEndian(file, ~size, 2);
        file.append(bytes, start, size);
    }
    uint32_t crc = ~0u;
    for (const char byte : bytes)
    {
        crc ^= static_cast<uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xedb88320 : crc >> 1;
    }
    AppendLittleEndian(file, ~crc, 4);
    AppendLittleEndian(file, bytes.size(), 4);
    return file;
}
