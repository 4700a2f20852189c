#pragma once

#include "caller/process/CPlainName.h"
#include "caller/process/CWorkerOutcome.h"
#include "caller/tasks/CFindings.h"
#include "caller/tasks/CWorkerSettings.h"

#include <filesystem>
#include <optional>
#include <string>

// A picture that is wanted of a film.
struct CPictureWish
{
    int64_t Milliseconds = 5000;  // its place in the film
    int Size = 0;                 // the longer side has at most so many pixels; 0 for a picture as the film has it
    std::string Extension = ".jpg";
};

// What catalogs keep: lists and pages show pictures of this size, and a catalog of many thousands stays small. The place is the worker's
// own.
inline const CPictureWish CatalogPicture {.Size = 256, .Extension = ".webp"};

// One task of the worker on one film: its command, the files that it needs, and what came of it.
class CFilmTask
{
public:
    // The folder must outlive the task.
    CFilmTask(TaskKind kind, const std::filesystem::path& film, const CPictureWish& wish, const CWorkFolder& folder);
    CFilmTask(const CFilmTask&) = delete;
    CFilmTask& operator=(const CFilmTask&) = delete;
    // Removes its files.
    ~CFilmTask();

    CWorkerRequest GetRequest(const CWorkerSettings& settings) const;
    // Takes what came of a run. Returns the next one that the task needs, or nothing when what there is was added to what is known of the
    // film.
    std::optional<CWorkerRequest> Finish(const CWorkerOutcome& outcome, const CWorkerRequest& request, CFindings& findings);

private:
    bool IsPictureToBeMade() const;
    CWorkerRequest MakePicture(const CWorkerRequest& request);
    std::string Take(const CWorkerOutcome& outcome, const CWorkerRequest& request, CFindings& findings) const;
    std::string TakePicture(CFindings& findings) const;

    TaskKind m_kind;
    CPictureWish m_wish;
    CPlainName m_name;
    std::string m_discFile;          // below that name; empty if it is no disc
    std::filesystem::path m_folder;  // of its files
    std::filesystem::path m_result;
    std::filesystem::path m_picture;  // made of the result; empty until it is
};
