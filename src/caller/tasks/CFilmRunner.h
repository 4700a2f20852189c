#pragma once

#include "caller/process/CWorkerPool.h"
#include "caller/tasks/CFilmTask.h"

#include <functional>
#include <memory>

// Has workers look at films, some at a time: of each film one task after the other. A task is tried also when one before it has failed,
// since a film without a picture still has its sound. Sound files have no pictures, which is no failure.
class CFilmRunner
{
public:
    using EndFunction = std::function<void(const CFindings& findings)>;

    // Throws std::runtime_error if there is no place for temporary files.
    CFilmRunner(const CWorkerSettings& settings, const CPictureWish& wish = {});

    bool HasRoom() const { return m_pool.HasRoom(); }
    // How many films are at work.
    size_t GetCount() const { return m_pool.GetRunningCount(); }
    // Starts with a film. The function is called by Wait when all its tasks, of which there must be one, have ended.
    void Start(const std::filesystem::path& film, CTaskSet tasks, EndFunction onEnd);
    // Waits until a film is done, the time is over, or a signal comes. Throws std::runtime_error when the folder for temporary files is
    // full.
    void Wait(std::chrono::milliseconds atMost) { m_pool.Wait(atMost); }

private:
    struct Work;

    void StartTask(const std::shared_ptr<Work>& work);
    void StartRun(const std::shared_ptr<Work>& work, const std::shared_ptr<CFilmTask>& task, CWorkerRequest request);
    void ExpectSpace(const CWorkerOutcome& outcome) const;
    void EndTask(const std::shared_ptr<Work>& work);

    const CWorkerSettings m_settings;
    const CPictureWish m_wish;
    CWorkFolder m_folder;
    CWorkerPool m_pool;
};
