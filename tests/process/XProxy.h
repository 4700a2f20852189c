#pragma once

#include "support/XServer.h"
#include "system/library/ZVDescriptor.h"

#include <cstddef>
#include <functional>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

// Stands between one program and an X server: passes on what either says, unless a test has something else in mind. It sees each
// request for itself, since the program waits for the answer to it.
class XProxy
{
public:
    enum class Next
    {
        PassOn,
        Ignore,
        BreakConnection,
    };
    // Decides about some bytes, and may change them.
    using Decision = std::function<Next(std::string& bytes)>;

    static Next PassOn(std::string&) { return Next::PassOn; }

    explicit XProxy(const XServer& server, Decision request, Decision answer = PassOn)
        : m_request(std::move(request)),
          m_answer(std::move(answer)),
          m_listener(Listen()),
          m_thread([this, socket = server.GetSocket()] { Serve(socket); })
    {
    }
    ~XProxy()
    {
        shutdown(m_listener.Get(), SHUT_RDWR);
        m_thread.join();
    }

    // The value of DISPLAY for the program.
    std::string GetDisplay() const { return ":" + std::to_string(m_number); }

private:
    // Numbers that no server takes by itself.
    static constexpr int FirstNumber = 20'000;

    // The abstract name is where programs look first.
    static socklen_t SetName(sockaddr_un& address, const std::string& name)
    {
        address.sun_family = AF_UNIX;
        name.copy(address.sun_path, sizeof address.sun_path);
        return static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    }

    ZVDescriptor Listen()
    {
        ZVDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un address {};
        socklen_t length = 0;
        do
            length = SetName(address, std::string(1, '\0') + "/tmp/.X11-unix/X" + std::to_string(++m_number));
        while (bind(listener.Get(), reinterpret_cast<sockaddr*>(&address), length) != 0 && errno == EADDRINUSE);
        listen(listener.Get(), 1);
        return listener;
    }

    void Serve(const std::string& serverSocket)
    {
        const ZVDescriptor program(accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC));
        const ZVDescriptor server(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un address {};
        const socklen_t length = SetName(address, serverSocket);
        if (connect(server.Get(), reinterpret_cast<sockaddr*>(&address), length) != 0)
            return;
        pollfd ends[] = {
            {.fd = program.Get(), .events = POLLIN, .revents = 0},
            {.fd = server.Get(),  .events = POLLIN, .revents = 0},
        };
        while (poll(ends, 2, -1) > 0)
            if ((ends[0].revents != 0 && !Move(program.Get(), server.Get(), m_request)) ||
                (ends[1].revents != 0 && !Move(server.Get(), program.Get(), m_answer)))
                break;
    }

    static bool Move(int from, int to, const Decision& decision)
    {
        char buffer[65'536];
        const ssize_t count = read(from, buffer, sizeof buffer);
        if (count <= 0)
            return false;
        std::string bytes(buffer, static_cast<size_t>(count));
        const Next next = decision(bytes);
        if (next == Next::PassOn)
            return send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL) == count;
        return next == Next::Ignore;
    }

    Decision m_request;
    Decision m_answer;
    int m_number = FirstNumber;
    ZVDescriptor m_listener;
    std::thread m_thread;
};
