#include "caller/tasks/CTaskSet.h"

#include <algorithm>
#include <cassert>

namespace
{
constexpr Task Tasks[] = {
    {TaskKind::Basic,   "basic",  "/AnalyzeZVVid"         },
    {TaskKind::Bars,    "bars",   "/AnalyzeVideoBlackBars"},
    {TaskKind::Picture, "thumbs", "/Thumbnail"            },
};
}

std::span<const Task> GetTasks()
{
    return Tasks;
}

const Task& GetTask(TaskKind kind)
{
    return *std::ranges::find(Tasks, kind, &Task::Kind);
}

CTaskSet GetPictureTasks()
{
    return CTaskSet(TaskKind::Bars) | TaskKind::Picture;
}

CTaskSet CTaskSet::FromBits(int64_t bits)
{
    CTaskSet set;
    for (const Task& task : Tasks)
        set.m_bits |= bits & GetBit(task.Kind);
    return set;
}

TaskKind CTaskSet::TakeFirst()
{
    const Task* const first = std::ranges::find_if(Tasks, [this](const Task& task) { return Has(task.Kind); });
    assert(first != std::end(Tasks));
    m_bits &= ~GetBit(first->Kind);
    return first->Kind;
}
