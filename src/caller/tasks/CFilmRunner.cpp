#include "caller/tasks/CFilmRunner.h"

// A film that workers look at.
struct CFilmRunner::Work
{
    CTaskSet Left;
    EndFunction OnEnd;
    CFindings Findings;
};

CFilmRunner::CFilmRunner(const CWorkerSettings& settings, const CPictureWish& wish)
    : m_settings(settings), m_wish(wish), m_pool(settings.Program, settings.Jobs)
{
}

void CFilmRunner::Start(const std::filesystem::path& film, CTaskSet tasks, EndFunction onEnd)
{
    StartTask(std::make_shared<Work>(Work {
        .Left = tasks, .OnEnd = std::move(onEnd), .Findings = {.Film = {.Path = film}, .Done = {}, .Errors = {}}
    }));
}

void CFilmRunner::StartTask(const std::shared_ptr<Work>& work)
{
    const auto task = std::make_shared<CFilmTask>(work->Left.TakeFirst(), work->Findings.Film.Path, m_wish, m_folder);
    StartRun(work, task, task->GetRequest(m_settings));
}

void CFilmRunner::StartRun(const std::shared_ptr<Work>& work, const std::shared_ptr<CFilmTask>& task, CWorkerRequest request)
{
    m_pool.Start(std::move(request),
                 [this, task, work](const CWorkerOutcome& outcome, const CWorkerRequest& done)
                 {
                     if (std::optional<CWorkerRequest> next = task->Finish(outcome, done, work->Findings))
                         StartRun(work, task, std::move(*next));
                     else
                         EndTask(work);
                 });
}

void CFilmRunner::EndTask(const std::shared_ptr<Work>& work)
{
    if (work->Findings.Film.IsSound())
        work->Left = work->Left.Without(GetPictureTasks());
    if (work->Left.IsEmpty())
        work->OnEnd(work->Findings);
    else
        StartTask(work);
}
