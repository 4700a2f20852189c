#pragma once

#include <chrono>
#include <cstdint>
#include <string>

// Tells on standard error how far a scan is: on a terminal in one line that changes, elsewhere in a line every ten seconds.
class CProgressLine
{
public:
    CProgressLine();
    ~CProgressLine();

    // How many films were done, failed among them, and found so far; the walk may find more unless it has ended.
    struct State
    {
        int64_t Done = 0;
        int64_t Failed = 0;
        int64_t Found = 0;
        bool IsFoundAll = false;
    };
    // Shows it, if it is time to.
    void Show(const State& state);
    // Shows a line above it.
    void Say(const std::string& line);
    // Takes the line of a terminal back.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    std::string MakeLine(const State& state) const;

    bool m_isTerminal;
    bool m_isShown = false;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_next;
};
