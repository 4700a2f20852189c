#include "caller/commands/CFilmTask.h"

#include "caller/film/ReadResult.h"

namespace
{
namespace fs = std::filesystem;

struct TaskCommand
{
    CFilmTask::Kind What;
    const char* Command;
};

constexpr TaskCommand TaskCommands[] = {
    {CFilmTask::Kind::Basic,   "/AnalyzeZVVid"         },
    {CFilmTask::Kind::Bars,    "/AnalyzeVideoBlackBars"},
    {CFilmTask::Kind::Picture, "/Thumbnail"            },
};

const char* GetCommand(CFilmTask::Kind what)
{
    for (const TaskCommand& row : TaskCommands)
        if (row.What == what)
            return row.Command;
    return "";
}

fs::path GetResultPath(const CFilmTask::Request& request, const CWorkFolder& folder)
{
    static uint64_t count = 0;
    const std::string number = std::to_string(++count);
    return folder.GetPath() / (request.What == CFilmTask::Kind::Picture
                                   ? "picture" + number + request.Picture.extension().string()
                                   : "result" + number + ".xml");
}
}

CFilmTask::CFilmTask(const Request& request, const CCallerOptions& options, const CWorkFolder& folder)
    : m_request(request), m_name(request.Film, folder), m_result(GetResultPath(request, folder))
{
    m_run.Arguments = {GetCommand(request.What), m_name.Get(), m_result};
    if (request.What == Kind::Picture)
        m_run.Arguments.insert(m_run.Arguments.end(), {"", std::to_string(request.Milliseconds)});
    m_run.TimeLimit = request.What == Kind::Bars ? options.BarsTimeLimit : options.TimeLimit;
    m_run.MemoryLimit = options.MemoryLimit;
}

CFilmTask::~CFilmTask()
{
    std::error_code ignored;
    fs::remove(m_result, ignored);
}

std::string CFilmTask::Finish(const CWorkerOutcome& outcome, CFilm& film) const
{
    if (!outcome.HasSucceeded())
        return GetFailure(outcome, m_run);
    if (m_request.What != Kind::Picture)
        return ReadResult(m_result, film) ? "" : "the worker's result cannot be read";
    if (!fs::exists(m_result))
        return "there is no picture in it";
    std::error_code error;
    fs::copy_file(m_result, m_request.Picture, fs::copy_options::overwrite_existing, error);
    return error ? "the picture cannot be written: " + error.message() : "";
}
