#include "caller/commands/RunOne.h"

#include "caller/process/CSignals.h"

using namespace std::chrono_literals;

std::optional<CFindings> RunOne(const std::filesystem::path& film, CTaskSet tasks, const CWorkerSettings& settings,
                                const CPictureWish& wish)
{
    CFilmRunner runner(settings, wish);
    std::optional<CFindings> result;
    runner.Start(film, tasks, [&](const CFindings& findings) { result = findings; });
    while (!result && !CSignals::IsInterrupted())
        runner.Wait(1s);
    return result;
}
