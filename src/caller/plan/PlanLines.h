#pragma once

#include "caller/catalog/CCatalog.h"

#include <optional>
#include <string>

// A film of a plan.
struct CPlannedFilm
{
    std::string Path;  // as bytes
    CFileIdentity Identity;
    CTaskSet Tasks;  // what is to be found out
};

// What came of a film of a shard.
struct CFilmResult
{
    int64_t Number = 0;      // of the film in its shard, from 0
    bool IsGone = false;     // the file was not there any more, so nothing else is known
    CFileIdentity Identity;  // of the file before it was looked at
    CFindings Findings;      // with the path
};

// Both as lines of JSON, without their ends. A path stands as "path", and when it is no UTF-8 as "path bytes" too, in which each byte that
// cannot stand for itself is \xHH; from that the same bytes are read again. Times are nanoseconds since 1970, a picture is base64.
std::string MakeLine(const CPlannedFilm& film);
std::string MakeLine(const CFilmResult& result);

// The same back. Nothing if a line is anything else, or if it wants what this program cannot find out.
std::optional<CPlannedFilm> ReadPlannedFilm(const std::string& line);
std::optional<CFilmResult> ReadFilmResult(const std::string& line);

// A path in an object of JSON, as above. Taking one throws nlohmann::json::exception when there is none.
void PutPath(nlohmann::json& object, const std::string& path);
std::string TakePath(const nlohmann::json& object);

// Tasks by their names. Taking them throws nlohmann::json::exception for what are none, and std::runtime_error for an unknown one.
nlohmann::json MakeTaskNames(CTaskSet tasks);
CTaskSet TakeTasks(const nlohmann::json& names);
