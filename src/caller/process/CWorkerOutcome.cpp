#include "caller/process/CWorkerOutcome.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <string_view>

namespace
{
// A line of the log has tabs in front of what was said, the last of five fields.
constexpr int FieldsBefore = 5;

// What every run says, and what is told by the report.
constexpr std::string_view Usual[] = {"Start", "Finish (", "Task completed", "Processing "};

// Of a decoder that complains about every frame the last words say enough.
constexpr size_t MaximumMessages = 8;

std::string_view GetMessage(std::string_view line)
{
    for (int field = 0; field < FieldsBefore; ++field)
    {
        const size_t tab = line.find('\t');
        if (tab == std::string_view::npos)
            break;
        line.remove_prefix(tab + 1);
    }
    return line;
}

// "[matroska,webm @ 0x561110032840] text" without the address, which is another one in each run.
std::string WithoutAddress(std::string_view message)
{
    const size_t mark = message.find(" @ 0x");
    const size_t end = message.find("] ");
    if (!message.starts_with('[') || mark == std::string_view::npos || end == std::string_view::npos || mark > end)
        return std::string(message);
    return std::string(message.substr(1, mark - 1)) + ": " + std::string(message.substr(end + 2));
}

// Each message once, in the order in which they came first.
std::vector<std::string> GetMessages(const std::string& log)
{
    std::vector<std::string> messages;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);)
    {
        const std::string message = WithoutAddress(GetMessage(line));
        const bool isUsual = std::ranges::any_of(Usual, [&](std::string_view start) { return message.starts_with(start); });
        if (!message.empty() && !isUsual && std::ranges::find(messages, message) == messages.end())
            messages.push_back(message);
        if (messages.size() > MaximumMessages)
            messages.erase(messages.begin());
    }
    return messages;
}

std::string InSeconds(std::chrono::milliseconds time)
{
    std::array<char, 40> text;
    snprintf(text.data(), text.size(), "%g seconds", std::chrono::duration<double>(time).count());
    return text.data();
}

std::string InMebibytes(uint64_t bytes)
{
    return std::to_string(bytes >> 20) + " MiB";
}

// How a run ended that did not end by itself.
std::string GetEnd(const CWorkerOutcome& outcome, const CWorkerRequest& request)
{
    using End = CWorkerOutcome::End;
    switch (outcome.How)
    {
    case End::Exited:
        return outcome.Number == 0 ? "the worker ended before it began" : "";
    case End::Crashed:
        return "the worker crashed (" + std::string(strsignal(outcome.Number)) + ")";
    case End::TooLong:
        return "the worker did not end within " + InSeconds(request.TimeLimit);
    case End::TooMuchMemory:
        return "the worker took more than " + InMebibytes(request.MemoryLimit) + " of memory";
    case End::NotStarted:
        return "the worker cannot be started: " + std::string(strerror(outcome.Number));
    }
    return {};
}
}

std::string GetReasons(const std::string& log)
{
    std::string reasons;
    for (const std::string& message : GetMessages(log))
        reasons += (reasons.empty() ? "" : "; ") + message;
    return reasons;
}

std::string GetFailure(const CWorkerOutcome& outcome, const CWorkerRequest& request)
{
    if (outcome.HasSucceeded())
        return {};
    const std::string end = GetEnd(outcome, request);
    // Who ends early says why on standard error alone.
    const bool hasBegun = outcome.How != CWorkerOutcome::End::Exited || outcome.Number != 0;
    const std::string reasons = GetReasons(hasBegun ? outcome.Log : outcome.Report);
    if (!end.empty())
        return end + (reasons.empty() ? "" : "; " + reasons);
    return reasons.empty() ? "the worker failed and did not say why" : reasons;
}
