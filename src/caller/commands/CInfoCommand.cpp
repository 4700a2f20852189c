#include "caller/commands/CInfoCommand.h"

#include "caller/commands/CheckName.h"
#include "caller/output/FilmBlock.h"
#include "caller/output/FilmJSON.h"
#include "caller/output/Messages.h"
#include "caller/process/CSignals.h"
#include "caller/tasks/CFilmRunner.h"

#include <iostream>
#include <map>

using namespace std::chrono_literals;

void CInfoCommand::AddOptions(CLI::App& app)
{
    app.add_option("FILE", m_films, "Films, sound files, or folders that are discs")->required()->check(CheckName);
    app.add_flag("--json", m_isJSON, "One object a line, with the keys of the worker's results");
    m_worker.AddTo(app, CWorkerOptions::Jobs::Several);
}

ExitStatus CInfoCommand::Run()
{
    CFilmRunner runner(m_worker.GetSettings());
    std::map<size_t, CFindings> waiting;  // for those before them to be shown
    ExitStatus status = AllDone;
    size_t next = 0;
    for (size_t shown = 0; shown < m_films.size() && !CSignals::IsInterrupted();)
    {
        for (; next < m_films.size() && runner.HasRoom(); ++next)
            runner.Start(m_films[next], TaskKind::Basic,
                         [&waiting, index = next](const CFindings& findings) { waiting[index] = findings; });
        runner.Wait(1s);
        for (auto film = waiting.find(shown); film != waiting.end(); film = waiting.find(++shown))
        {
            if (!film->second.Errors.empty())
                status = SomeFailed;
            Show(film->second);
            waiting.erase(film);
        }
        std::cout.flush();
    }
    return CSignals::IsInterrupted() ? Interrupted : status;
}

void CInfoCommand::Show(const CFindings& findings) const
{
    const std::string error = findings.GetError();
    if (m_isJSON)
        std::cout << MakeFilmJSON(findings.Film, error) << '\n';
    else if (error.empty())
        std::cout << MakeFilmBlock(findings.Film) << '\n';
    else
        SayFailure(findings.Film.Path, error);
}
