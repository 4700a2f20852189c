#include "caller/scan/CProgressLine.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{
using namespace std::chrono_literals;

constexpr auto TerminalInterval = 200ms;
constexpr auto PlainInterval = 10s;

// One that can take a line back.
bool IsTerminal()
{
    const char* const kind = getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && kind != nullptr && strcmp(kind, "dumb") != 0;
}

// A line that is longer than the terminal is wide could not be taken back.
size_t GetColumns()
{
    constexpr size_t UsualColumns = 80;
    winsize size {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col : UsualColumns;
}

std::string MakeTime(double seconds)
{
    std::array<char, 40> text;
    const auto whole = static_cast<long long>(seconds);
    snprintf(text.data(), text.size(), "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
    return text.data();
}
}

CProgressLine::CProgressLine() : m_isTerminal(IsTerminal()), m_next(m_start + (m_isTerminal ? 0s : PlainInterval)) {}

CProgressLine::~CProgressLine()
{
    Clear();
}

void CProgressLine::Show(const State& state)
{
    const auto now = Clock::now();
    if (now < m_next)
        return;
    m_next = now + (m_isTerminal ? Clock::duration(TerminalInterval) : Clock::duration(PlainInterval));
    Clear();
    const std::string line = MakeLine(state);
    fprintf(stderr, m_isTerminal ? "%s" : "%s\n", m_isTerminal ? line.substr(0, GetColumns() - 1).c_str() : line.c_str());
    fflush(stderr);
    m_isShown = m_isTerminal;
}

void CProgressLine::Say(const std::string& line)
{
    Clear();
    fprintf(stderr, "%s\n", line.c_str());
}

void CProgressLine::Clear()
{
    if (m_isShown)
        fputs("\r\033[K", stderr);
    m_isShown = false;
}

std::string CProgressLine::MakeLine(const State& state) const
{
    const double seconds = std::chrono::duration<double>(Clock::now() - m_start).count();
    const double rate = seconds > 0 ? static_cast<double>(state.Done) / seconds : 0;
    std::array<char, 200> text;
    snprintf(text.data(), text.size(), "%lld of %lld%s done, %lld failed, %.1f files a second",
             static_cast<long long>(state.Done), static_cast<long long>(state.Found), state.IsFoundAll ? "" : " or more",
             static_cast<long long>(state.Failed), rate);
    std::string line = text.data();
    if (state.IsFoundAll && rate > 0)
        line += ", " + MakeTime(static_cast<double>(state.Found - state.Done) / rate) + " left";
    return line;
}
