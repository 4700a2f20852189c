#include "caller/tasks/CFilmTask.h"

#include "caller/film/FindDiscFile.h"
#include "caller/film/ReadBlackBars.h"
#include "caller/film/ReadResult.h"
#include "caller/picture/CPicture.h"

#include <fstream>
#include <iterator>

namespace
{
namespace fs = std::filesystem;

// A picture that is made smaller loses nothing by having been a JPEG file before, and these are the fastest.
std::string GetExtension(TaskKind kind, const CPictureWish& wish)
{
    if (kind != TaskKind::Picture)
        return ".xml";
    return wish.Size > 0 ? ".jpg" : wish.Extension;
}

std::string ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
}

CFilmTask::CFilmTask(TaskKind kind, const fs::path& film, const CPictureWish& wish, const CWorkFolder& folder)
    : m_kind(kind),
      m_wish(wish),
      m_name(film, folder),
      m_discFile(FindDiscFile(film)),
      m_result(folder.MakeName("result", GetExtension(kind, wish)))
{
}

CFilmTask::~CFilmTask()
{
    std::error_code ignored;
    fs::remove(m_result, ignored);
}

CWorkerRequest CFilmTask::GetRequest(const CWorkerSettings& settings) const
{
    CWorkerRequest request {
        .Arguments = {GetTask(m_kind).Command, m_discFile.empty() ? m_name.Get() : m_name.Get() + '/' + m_discFile, m_result},
        .TimeLimit = m_kind == TaskKind::Bars ? settings.BarsTimeLimit : settings.TimeLimit,
        .MemoryLimit = settings.MemoryLimit,
    };
    if (m_kind == TaskKind::Picture)
        request.Arguments.insert(request.Arguments.end(), {"", std::to_string(m_wish.Milliseconds)});
    return request;
}

void CFilmTask::Finish(const CWorkerOutcome& outcome, const CWorkerRequest& request, CFindings& findings) const
{
    const std::string error = Take(outcome, request, findings);
    findings.Done = findings.Done | m_kind;
    if (!error.empty())
        findings.Errors[GetTask(m_kind).Name] = ToUTF8(error);
}

// Returns why there is nothing, or an empty text.
std::string CFilmTask::Take(const CWorkerOutcome& outcome, const CWorkerRequest& request, CFindings& findings) const
{
    if (!outcome.HasSucceeded())
        return GetFailure(outcome, request);
    if (m_kind == TaskKind::Picture)
        return TakePicture(findings);
    const bool isRead =
        m_kind == TaskKind::Bars ? ReadBlackBars(m_result, findings.Film) : ReadResult(m_result, findings.Film.Values);
    return isRead ? "" : "the worker's result cannot be read";
}

// A film without a picture, such as a sound file, is no failure.
std::string CFilmTask::TakePicture(CFindings& findings) const
{
    if (!fs::exists(m_result))
        return {};
    findings.Picture = m_wish.Size > 0 ? CPicture(m_result).MakeSmaller(m_wish.Size, m_wish.Extension) : ReadFile(m_result);
    return findings.Picture.empty() ? "the picture cannot be read or written" : "";
}
