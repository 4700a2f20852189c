#include "caller/process/CWorkerOutcome.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <string_view>

namespace
{
// A line of the log has tabs in front of what was said, the last of five fields. The fourth is the category.
constexpr size_t CategoryField = 3;
constexpr size_t MessageField = 5;

// The category of what the codec libraries say.
constexpr std::string_view LibraryCategory = "512";

// What every run says, and what is told by the report.
constexpr std::string_view Usual[] = {"Start", "Finish (", "Task completed", "Processing "};

// Of a decoder that complains about every frame the last words say enough.
constexpr size_t MaximumMessages = 8;

// A field of a line; the last one is all that is left. A line of another form is one field.
std::string_view GetField(std::string_view line, size_t field)
{
    for (size_t passed = 0; passed < field; ++passed)
    {
        const size_t tab = line.find('\t');
        if (tab == std::string_view::npos)
            return field == MessageField ? line : std::string_view();
        line.remove_prefix(tab + 1);
    }
    return field == MessageField ? line : line.substr(0, line.find('\t'));
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

enum class Speaker
{
    Worker,
    Libraries,
};

// What one of them says: each message once, in the order in which they came first.
std::vector<std::string> GetMessages(const std::string& log, Speaker wanted)
{
    std::vector<std::string> messages;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);)
    {
        const std::string message = WithoutAddress(GetField(line, MessageField));
        const bool isUsual = std::ranges::any_of(Usual, [&](std::string_view start) { return message.starts_with(start); });
        const Speaker speaker = GetField(line, CategoryField) == LibraryCategory ? Speaker::Libraries : Speaker::Worker;
        if (!message.empty() && !isUsual && speaker == wanted && std::ranges::find(messages, message) == messages.end())
            messages.push_back(message);
        if (messages.size() > MaximumMessages)
            messages.erase(messages.begin());
    }
    return messages;
}

std::string InSeconds(std::chrono::milliseconds time)
{
    std::array<char, 40> text;
    const double seconds = std::chrono::duration<double>(time).count();
    snprintf(text.data(), text.size(), seconds == 1 ? "%g second" : "%g seconds", seconds);
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
    for (const Speaker speaker : {Speaker::Worker, Speaker::Libraries})
        for (const std::string& message : GetMessages(log, speaker))
            reasons += (reasons.empty() ? "" : "; ") + message;
    return reasons;
}

std::string GetFailure(const CWorkerOutcome& outcome, const CWorkerRequest& request)
{
    if (outcome.HasSucceeded())
        return {};
    const std::string end = GetEnd(outcome, request);
    // Who ends early says why on standard error alone.
    const std::string reasons = GetReasons(outcome.HasBegun() ? outcome.Log : outcome.Report);
    if (!end.empty())
        return end + (reasons.empty() ? "" : "; " + reasons);
    return reasons.empty() ? "the worker failed and did not say why" : reasons;
}
