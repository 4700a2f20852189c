#pragma once

#include "caller/commands/CCallerOptions.h"
#include "caller/film/CFilm.h"
#include "caller/process/CPlainName.h"
#include "caller/process/CWorkerOutcome.h"

#include <filesystem>
#include <string>

// One task of the worker on one film: its command, the files that it needs, and what came of it.
class CFilmTask
{
public:
    enum class Kind
    {
        Basic,  // all that is known but black bars
        Bars,
        Picture,
    };

    // The picture is that of Kind::Picture, at a time in milliseconds.
    struct Request
    {
        Kind What = Kind::Basic;
        std::filesystem::path Film;
        std::filesystem::path Picture = {};
        int64_t Milliseconds = 5000;
    };

    CFilmTask(const Request& request, const CCallerOptions& options, const CWorkFolder& folder);
    ~CFilmTask();

    const CWorkerRequest& GetRequest() const { return m_run; }
    // Takes what came of the run: adds its values to the film, or returns why there are none.
    std::string Finish(const CWorkerOutcome& outcome, CFilm& film) const;

private:
    Request m_request;
    CPlainName m_name;
    std::filesystem::path m_result;
    CWorkerRequest m_run;
};
