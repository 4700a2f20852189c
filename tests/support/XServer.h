#pragma once

#include <cstdio>
#include <memory>
#include <string>

// A real X server of the test's own, under a number that nobody else has. It ends with the object, or with the test.
class XServer
{
public:
    // A server of one screen in memory, 1280 x 1024, with further arguments.
    static XServer StartVirtual(const std::string& arguments = "");
    // A server with two monitors of 1920 x 1080 side by side, at 60 Hz. Their outputs are DUMMY0 and DUMMY2, and there are others
    // that nothing is connected to.
    static XServer StartWithTwoMonitors();

    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;
    ~XServer();

    // False where the server, or what it needs, is not there, and where nobody may start it.
    bool IsUsable() const { return !m_display.empty(); }
    // The value of DISPLAY: ":3".
    const std::string& GetDisplay() const { return m_display; }
    // The file of the server's socket.
    std::string GetSocket() const { return "/tmp/.X11-unix/X" + m_display.substr(1); }

private:
    // The shell runs both; the second one with DISPLAY set.
    XServer(const std::string& command, const std::string& preparation);

    std::unique_ptr<FILE, int (*)(FILE*)> m_output;
    int m_process = 0;
    std::string m_display;
};
