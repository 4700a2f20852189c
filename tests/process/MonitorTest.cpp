#include "RunWorker.h"
#include "XProxy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using Next = XProxy::Next;

// Requests of XRandR, which their second byte tells from each other.
constexpr char GetOutputInfo = 9;
constexpr char GetCrtcInfo = 20;

bool IsRequest(const std::string& bytes, char kind)
{
    return bytes.size() == 12 && bytes[1] == kind;
}

constexpr char Before[] = "what was there";
constexpr char First[] = "0,0,1920,1080";
constexpr char Second[] = "1920,0,3840,1080";

class Monitor : public testing::Test
{
protected:
    // Runs the worker, which reports as always. The log is that of this run alone.
    void Run(const std::vector<std::string>& arguments, const std::string& display)
    {
        std::filesystem::remove("log");
        const WorkerRun run = RunWorker(arguments, {"DISPLAY=" + display, "ZV_LOG_FILE=" + m_folder.PathOf("log")});
        EXPECT_EQ(run.Status, 255);
        EXPECT_EQ(run.Error, "");
        EXPECT_THAT(run.Output, testing::MatchesRegex("Total time: [0-9]+ ms\nResult: -1\n"));
        m_log = WorkFolder::Read("log");
    }

    // What a file holds after the worker was to write a monitor's rectangle to it.
    std::string GetRect(const std::string& display, const std::string& number = "0")
    {
        WorkFolder::Write("rect", Before);
        Run({"/GetMonitorRect", number, "rect"}, display);
        return WorkFolder::Read("rect");
    }

    const WorkFolder m_folder;
    std::string m_log;
};

TEST_F(Monitor, IsTheWholeScreenOfASmallServer)
{
    const std::string file = "new folder/caf\xe9";
    for (const char* arguments : {"", "-extension RANDR"})
    {
        const XServer server = XServer::StartVirtual(arguments);
        if (!server.IsUsable())
            GTEST_SKIP() << "Xvfb cannot be started here";
        for (const std::vector<std::string>& task : std::initializer_list<std::vector<std::string>> {
                 {"/GetMonitorRect", "0",  file},
                 {     "/getmonitorrect",              "x", file    },
 // Arguments are counted from the first of all.
                 { "foo",             "/GetMonitorRect",            file,     "out"},
        })
        {
            SCOPED_TRACE(arguments + testing::PrintToString(task));
            Run(task, server.GetDisplay());
            EXPECT_EQ(WorkFolder::Read(file), "0,0,1280,1024");
            EXPECT_THAT(m_log, HasSubstr("Screen width = 1280 height = 1024 x = 0, y = 0, rrmode = "));
            std::filesystem::remove_all("new folder");
        }
    }
}

TEST_F(Monitor, IsCountedAmongTheActiveOnes)
{
    const XServer server = XServer::StartWithTwoMonitors();
    if (!server.IsUsable())
        GTEST_SKIP() << "Xorg with its dummy driver and xrandr cannot be started here";
    for (const auto& [number, rect] : {
             std::pair("0", First), {"1",  Second},
               {"2",  First },
               {"7",  First },
               {"-1", First }
    })
        EXPECT_EQ(GetRect(server.GetDisplay(), number), rect) << number;
    EXPECT_THAT(m_log, HasSubstr("2 non-zero size screens found"));

    // The first output goes before the server is asked for its controller, which it does not know any more then.
    int controllers = 0;
    const auto spoilFirst = [&controllers](std::string& request)
    {
        if (IsRequest(request, GetCrtcInfo) && controllers++ == 0)
            request.replace(4, 4, "\xff\xff\xff\x0f");
        return Next::PassOn;
    };
    EXPECT_EQ(GetRect(XProxy(server, spoilFirst).GetDisplay()), Second);
    EXPECT_THAT(m_log, ContainsRegex("Output [0-9]+ is skipped: X error 1[0-9]+"));

    // The first output is connected but has no controller, or the other way round.
    for (const auto& [place, bytes] : {std::pair(12, std::string(4, '\0')), std::pair(24, std::string(1, '\1'))})
    {
        int outputs = 0;
        const auto countOutputs = [&outputs](std::string& request)
        {
            outputs += IsRequest(request, GetOutputInfo) ? 1 : 0;
            return Next::PassOn;
        };
        const auto changeFirst = [&, at = static_cast<size_t>(place), &what = bytes](std::string& answer)
        {
            if (outputs == 1)
                answer.replace(at, what.size(), what);
            return Next::PassOn;
        };
        EXPECT_EQ(GetRect(XProxy(server, countOutputs, changeFirst).GetDisplay()), Second) << place;
        EXPECT_THAT(m_log, Not(HasSubstr("is skipped")));
    }
}

TEST_F(Monitor, IsNotToldByAServerThatBreaksTheConnection)
{
    const XServer server = XServer::StartVirtual();
    if (!server.IsUsable())
        GTEST_SKIP() << "Xvfb cannot be started here";
    int answered = -1;
    int requests = 0;
    do
    {
        ++answered;
        requests = 0;
        const auto answerSome = [&](std::string&) { return ++requests > answered ? Next::BreakConnection : Next::PassOn; };
        const std::string rect = GetRect(XProxy(server, answerSome).GetDisplay());
        EXPECT_EQ(rect, requests > answered ? Before : "0,0,1280,1024") << answered << m_log;
    } while (requests > answered);
    EXPECT_GT(answered, 10) << "the last questions are those for the outputs";
}

// The parameter is the number of answers before the silence.
class SilentMonitor : public Monitor, public testing::WithParamInterface<int>
{
};

TEST_P(SilentMonitor, IsNotWaitedForWithoutEnd)
{
    const XServer server = XServer::StartVirtual();
    if (!server.IsUsable())
        GTEST_SKIP() << "Xvfb cannot be started here";
    int left = GetParam();
    const XProxy proxy(server, [&left](std::string&) { return left-- > 0 ? Next::PassOn : Next::Ignore; });
    EXPECT_EQ(GetRect(proxy.GetDisplay()), Before);
    EXPECT_THAT(m_log, HasSubstr(GetParam() == 0 ? "There is no display: " : "The X server did not tell its screens: "));
    EXPECT_THAT(m_log, HasSubstr("there was no answer in time"));
}

INSTANTIATE_TEST_SUITE_P(Answers, SilentMonitor, testing::Values(0, 10));

TEST_F(Monitor, NeedsAServer)
{
    for (const char* display : {"", ":19999", "nonsense"})
    {
        EXPECT_EQ(GetRect(display), Before) << display;
        EXPECT_THAT(m_log, HasSubstr("There is no display: the X server is '" + std::string(display) + "'"));
    }
}
}
