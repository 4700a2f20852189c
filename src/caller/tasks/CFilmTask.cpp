#include "caller/tasks/CFilmTask.h"

#include "caller/film/FindDiscFile.h"
#include "caller/film/ReadBlackBars.h"
#include "caller/film/ReadResult.h"
#include "caller/picture/CPicture.h"
#include "caller/tasks/RemoveCover.h"

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
      m_folder(folder),
      m_result(folder.MakeName("result", GetExtension(kind, wish)))
{
}

CFilmTask::~CFilmTask()
{
    std::error_code ignored;
    fs::remove(m_result, ignored);
    fs::remove(m_picture, ignored);
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

std::optional<CWorkerRequest> CFilmTask::Finish(const CWorkerOutcome& outcome, const CWorkerRequest& request, CFindings& findings)
{
    if (outcome.HasSucceeded() && IsPictureToBeMade())
        return MakePicture(request);
    const std::string error = Take(outcome, request, findings);
    findings.Done = findings.Done | m_kind;
    if (!error.empty())
        findings.Errors[GetTask(m_kind).Name] = ToUTF8(m_name.TellReal(error));
    return std::nullopt;
}

// The cover of a film comes as the film has it, whatever its format and size are.
bool CFilmTask::IsPictureToBeMade() const
{
    return m_kind == TaskKind::Picture && fs::exists(m_result) && (m_wish.Size > 0 || !HasFormat(m_result, m_wish.Extension));
}

// A cover is a stranger's file, so a process of its own reads it, with the limits of a worker.
CWorkerRequest CFilmTask::MakePicture(const CWorkerRequest& request)
{
    m_picture = m_folder.MakeName("picture", m_wish.Extension);
    CWorkerRequest making = request;
    making.Program = "/proc/self/exe";
    making.Arguments = {PictureCommandName, m_result, m_picture, std::to_string(m_wish.Size)};
    return making;
}

// Returns why there is nothing, or an empty text.
std::string CFilmTask::Take(const CWorkerOutcome& outcome, const CWorkerRequest& request, CFindings& findings) const
{
    if (!m_picture.empty())
        return outcome.HasEndedWell() ? TakePicture(findings) : "the picture cannot be made smaller or converted";
    if (!outcome.HasSucceeded())
        return GetFailure(outcome, request);
    if (m_kind == TaskKind::Picture)
        return TakePicture(findings);
    const bool isRead =
        m_kind == TaskKind::Bars ? ReadBlackBars(m_result, findings.Film) : ReadResult(m_result, findings.Film.Values);
    if (m_kind == TaskKind::Basic)
        RemoveCover(findings.Film.Values);
    return isRead ? "" : "the worker's result cannot be read";
}

// A film without a picture, such as a sound file, is no failure.
std::string CFilmTask::TakePicture(CFindings& findings) const
{
    const fs::path& picture = m_picture.empty() ? m_result : m_picture;
    if (!fs::exists(picture))
        return {};
    findings.Picture = ReadFile(picture);
    return findings.Picture.empty() ? "the picture cannot be read" : "";
}
