#include "caller/tasks/CFilmTask.h"

#include "caller/files/ReadRegularFile.h"
#include "caller/film/FindDiscFile.h"
#include "caller/film/ReadBlackBars.h"
#include "caller/film/ReadResult.h"
#include "caller/picture/CPicture.h"
#include "caller/tasks/RemoveCover.h"

#include <string_view>

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

bool IsFolder(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

// A link to nothing is there too: the worker left it.
bool IsThere(const fs::path& path)
{
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// What the process said last, which is a sentence of ours if it could say one.
std::string GetPictureFailure(const CWorkerOutcome& outcome)
{
    constexpr std::string_view Speaker = "zivora: ";
    const size_t place = outcome.Report.rfind(Speaker);
    if (outcome.How != CWorkerOutcome::End::Exited || place == std::string::npos)
        return "the picture cannot be made smaller or converted";
    const size_t start = place + Speaker.size();
    return outcome.Report.substr(start, outcome.Report.find('\n', start) - start);
}
}

CFilmTask::CFilmTask(TaskKind kind, const fs::path& film, const CPictureWish& wish, const CWorkFolder& folder)
    : m_kind(kind),
      m_wish(wish),
      m_name(film, folder),
      m_discFile(FindDiscFile(film)),
      m_folder(folder.MakeTaskFolder()),
      m_result(m_folder / ("result" + GetExtension(kind, wish)))
{
}

CFilmTask::~CFilmTask()
{
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

CWorkerRequest CFilmTask::GetRequest(const CWorkerSettings& settings) const
{
    CWorkerRequest request {
        .Arguments = {GetTask(m_kind).Command, m_discFile.empty() ? m_name.Get() : m_name.Get() + '/' + m_discFile, m_result},
        .LogFile = m_folder / "run.log",
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
    return m_kind == TaskKind::Picture && IsThere(m_result) &&
           (m_wish.Size > 0 || !HasFormat(ReadRegularFile(m_result, MaximumPictureSize).value_or(""), m_wish.Extension));
}

// A cover is a stranger's file, so a process of its own reads it, locked in and with the limits of a worker.
CWorkerRequest CFilmTask::MakePicture(const CWorkerRequest& request)
{
    m_picture = m_folder / ("picture" + m_wish.Extension);
    CWorkerRequest making = request;
    making.Program = "/proc/self/exe";
    making.Arguments = {PictureCommandName, m_result, m_picture, std::to_string(m_wish.Size)};
    return making;
}

// Returns why there is nothing, or an empty text.
std::string CFilmTask::Take(const CWorkerOutcome& outcome, const CWorkerRequest& request, CFindings& findings) const
{
    if (!m_picture.empty())
        return outcome.HasEndedWell() ? TakePicture(findings) : GetPictureFailure(outcome);
    if (!outcome.HasSucceeded())
        return m_discFile.empty() && IsFolder(m_name.Get()) ? "it is a folder and no disc: zivora scan looks into folders"
                                                            : GetFailure(outcome, request);
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
    if (!IsThere(picture))
        return {};
    std::string bytes = ReadRegularFile(picture, MaximumPictureSize).value_or("");
    if (!HasFormat(bytes, m_wish.Extension))
        return "the picture cannot be read";
    findings.Picture = std::move(bytes);
    return {};
}
