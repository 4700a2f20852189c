#include "caller/commands/CInfoCommand.h"

#include "caller/commands/CFilmTask.h"
#include "caller/commands/CSignals.h"
#include "caller/output/FilmBlock.h"
#include "caller/output/FilmJSON.h"
#include "caller/process/CWorkerPool.h"

#include <iostream>
#include <map>

namespace
{
using namespace std::chrono_literals;

// As many films as the machine can use are looked at, and shown in the order of their names on the command line.
constexpr size_t Jobs = 2;
}

ExitStatus CInfoCommand::Run(const CCallerOptions& options) const
{
    const CWorkFolder folder;
    CWorkerPool pool(options.Worker, Jobs, folder);
    std::map<size_t, std::pair<CFilm, std::string>> waiting;
    size_t next = 0;
    size_t shown = 0;
    ExitStatus status = AllDone;
    while (shown < Films.size() && !CSignals::IsInterrupted())
    {
        for (; next < Films.size() && pool.HasRoom(); ++next)
        {
            const auto task = std::make_shared<CFilmTask>(CFilmTask::Request {.Film = Films[next]}, options, folder);
            pool.Start(task->GetRequest(),
                       [&waiting, task, index = next, path = Films[next]](const CWorkerOutcome& outcome, const CWorkerRequest&)
                       {
                           CFilm film {.Path = path};
                           std::string error = task->Finish(outcome, film);
                           waiting[index] = {std::move(film), std::move(error)};
                       });
        }
        pool.Wait(1s);
        for (auto film = waiting.find(shown); film != waiting.end(); film = waiting.find(++shown))
        {
            const auto& [what, error] = film->second;
            if (!error.empty())
                status = SomeFailed;
            if (options.AsJSON)
                std::cout << MakeFilmJSON(what, error) << '\n';
            else if (error.empty())
                std::cout << MakeFilmBlock(what) << '\n';
            else
                std::cerr << "zivora: " << MakePlain(ToUTF8(what.Path)) << ": " << MakePlain(error) << '\n';
            waiting.erase(film);
        }
        std::cout.flush();
    }
    return CSignals::IsInterrupted() ? Interrupted : status;
}
