#include "caller/tasks/CFilmRunner.h"

// A film that workers look at.
struct CFilmRunner::Work
{
    CTaskSet Left;
    EndFunction OnEnd;
    CFindings Findings;
};

CFilmRunner::CFilmRunner(const CWorkerSettings& settings, const CPictureWish& wish)
    : m_settings(settings), m_wish(wish), m_pool(settings.Program, settings.Jobs, m_folder)
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
    m_pool.Start(task->GetRequest(m_settings),
                 [this, task, work](const CWorkerOutcome& outcome, const CWorkerRequest& request)
                 {
                     task->Finish(outcome, request, work->Findings);
                     if (work->Findings.Film.IsSound())
                         work->Left = work->Left.Without(GetPictureTasks());
                     if (work->Left.IsEmpty())
                         work->OnEnd(work->Findings);
                     else
                         StartTask(work);
                 });
}
