#include "caller/tasks/CFindings.h"

// A film that cannot be read at all fails in every task, and says the same each time.
std::string CFindings::GetError() const
{
    if (const auto basic = Errors.find(GetTask(TaskKind::Basic).Name); basic != Errors.end())
        return basic->second;
    std::string text;
    for (const auto& [task, error] : Errors)
        text += (text.empty() ? "" : "; ") + error;
    return text;
}
