#include "support/XServer.h"

#include <csignal>
#include <cstdlib>

namespace
{
// It touches nothing of the machine: no input device, no graphics card.
constexpr char Configured[] = R"( -config /dev/fd/3 -logfile /dev/null -novtswitch -sharevts 3<<END
Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoAddGPU" "false"
EndSection
Section "Device"
    Identifier "dummy"
    Driver "dummy"
    VideoRam 64000
EndSection
END
)";

// The last look has the driver notice what is connected now.
constexpr char SetTwoMonitors[] = "xrandr --newmode side 148.5 1920 2008 2052 2200 1080 1084 1089 1125 &&"
                                  " xrandr --addmode DUMMY0 side && xrandr --addmode DUMMY2 side &&"
                                  " xrandr --output DUMMY0 --mode side --pos 0x0 --output DUMMY2 --mode side --pos 1920x0 &&"
                                  " xrandr";
}

XServer::XServer(const std::string& command, const std::string& preparation)
    : m_output(popen(("exec 2>/dev/null; echo $$; exec setpriv --pdeathsig KILL " + command).c_str(), "re"), pclose)
{
    int number = 0;
    // It tells its number when it can be reached.
    if (fscanf(m_output.get(), "%d %d", &m_process, &number) != 2)
        return;
    const std::string display = ":" + std::to_string(number);
    if (system(("exec >/dev/null 2>&1; export DISPLAY=" + display + "; " + preparation).c_str()) == 0)
        m_display = display;
}

XServer::~XServer()
{
    if (m_process != 0)
        kill(m_process, SIGTERM);
}

XServer XServer::StartVirtual(const std::string& arguments)
{
    return {"Xvfb -displayfd 1 -noreset -nolisten tcp -screen 0 1280x1024x24 " + arguments, "true"};
}

XServer XServer::StartWithTwoMonitors()
{
    return {"Xorg -displayfd 1 -noreset -nolisten tcp" + std::string(Configured), SetTwoMonitors};
}
