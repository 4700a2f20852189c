#include "caller/process/CWorkerOutcome.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <string_view>

namespace
{
// A line of the log has tabs in front of what was said, the last of five fields.
constexpr int FieldsBefore = 5;

// What every run says, and what is told by the report.
constexpr std::string_view Usual[] = {"Start", "Finish (", "Task completed", "Processing "};

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

std::string InSeconds(std::chrono::milliseconds time)
{
    return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(time).count()) + " seconds";
}

std::string InMebibytes(uint64_t bytes)
{
    return std::to_string(bytes >> 20) + " MiB";
}
}

std::string GetReasons(const std::string& log)
{
    std::string reasons;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);)
    {
        const std::string_view message = GetMessage(line);
        const bool isUsual = std::ranges::any_of(Usual, [&](std::string_view start) { return message.starts_with(start); });
        if (!message.empty() && !isUsual)
            reasons += (reasons.empty() ? "" : "; ") + std::string(message);
    }
    return reasons.empty() ? "the worker failed and did not say why" : reasons;
}

std::string GetFailure(const CWorkerOutcome& outcome, const CWorkerRequest& request)
{
    using End = CWorkerOutcome::End;
    switch (outcome.How)
    {
    case End::Exited:
        return outcome.Number == 0 ? "" : GetReasons(outcome.Log);
    case End::Crashed:
        return "the worker crashed (" + std::string(strsignal(outcome.Number)) + ")";
    case End::TooLong:
        return "the worker did not end within " + InSeconds(request.TimeLimit);
    case End::TooMuchMemory:
        return "the worker took more than " + InMebibytes(request.MemoryLimit) + " of memory";
    case End::Stopped:
        return "the worker was stopped";
    case End::NotStarted:
        return "the worker cannot be started: " + std::string(strerror(outcome.Number));
    }
    return {};
}
