#include "caller/plan/ShardResults.h"

#include "caller/files/CWholeFile.h"
#include "caller/output/Messages.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <set>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;
using nlohmann::json;

constexpr char Format[] = "zivora results";
constexpr int Version = 1;
constexpr char Extension[] = ".jsonl";

std::set<fs::path> ListFolder(const fs::path& folder)
{
    std::set<fs::path> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (entry->path().extension() == Extension)
            names.insert(entry->path().filename());
    return names;
}

// What the folder has, and what is said to be in it: a machine may see a file of another later in a list of names than by its own name.
std::set<fs::path> GetResultFiles(const CPlan& plan, int64_t shard)
{
    std::set<fs::path> names = ListFolder(plan.GetResultFolder(shard));
    std::ifstream file(plan.GetFinishedFile(shard), std::ios::binary);
    const json finished = file ? json::parse(file, nullptr, false) : json();
    if (finished.is_object() && finished.contains("files"))
        for (const json& name : finished["files"])
            if (name.is_string())
                names.insert(fs::path(name.get<std::string>()).filename());
    return names;
}

// The results of one shard, which come from several files.
class Results
{
public:
    Results(const CPlan& plan, CShardFilms& films, const ResultFunction& onResult)
        : m_plan(plan), m_films(films), m_onResult(onResult), m_has(static_cast<size_t>(films.GetCount()))
    {
    }

    void ReadFile(const fs::path& path)
    {
        CLineFile file(path);
        std::string line;
        // A process that was killed early has said nothing yet.
        if (!file.GetNext(line))
            return;
        if (line != MakeResultHead(m_plan, m_films.GetShard()))
            return SayFailure(path, "it has no results of this shard of the plan, and is passed over");
        int64_t damaged = 0;
        int64_t first = 0;
        while (file.GetNext(line))
            if (!Take(line) && damaged++ == 0)
                first = file.GetNumber();
        if (damaged > 0)
            SayFailure(path, std::to_string(damaged) + (damaged == 1 ? " line is" : " lines are") + " damaged, from line " +
                                 std::to_string(first) + " on, and count as missing");
    }

    const std::vector<bool>& GetAll() const { return m_has; }

private:
    bool Take(const std::string& line)
    {
        const std::optional<CFilmResult> result = ReadFilmResult(line);
        if (!result || result->Number < 0 || result->Number >= m_films.GetCount())
            return false;
        const std::optional<CPlannedFilm> film = m_films.Get(result->Number);
        if (!film || film->Path != result->Findings.Film.Path)
            return false;
        // A film is there twice when two machines worked on a shard at a time.
        std::vector<bool>::reference has = m_has[static_cast<size_t>(result->Number)];
        if (!has)
            m_onResult(*result, *film);
        has = true;
        return true;
    }

    const CPlan& m_plan;
    CShardFilms& m_films;
    const ResultFunction& m_onResult;
    std::vector<bool> m_has;
};
}

std::string MakeResultHead(const CPlan& plan, int64_t shard)
{
    return json {
        {"format",  Format            },
        {"version", Version           },
        {"plan",    plan.GetFacts().ID},
        {"shard",   shard             }
    }
        .dump();
}

std::vector<bool> ReadResults(const CPlan& plan, CShardFilms& films, const ResultFunction& onResult)
{
    Results results(plan, films, onResult);
    for (const fs::path& name : GetResultFiles(plan, films.GetShard()))
    {
        const fs::path path = plan.GetResultFolder(films.GetShard()) / name;
        if (access(path.c_str(), R_OK) == 0)
            results.ReadFile(path);
        else
            SayFailure(path, std::string(strerror(errno)) + ", and its films count as missing");
    }
    return results.GetAll();
}

bool IsFinished(const CPlan& plan, int64_t shard)
{
    std::error_code error;
    return fs::exists(plan.GetFinishedFile(shard), error);
}

void MarkFinished(const CPlan& plan, int64_t shard)
{
    json files = json::array();
    for (const fs::path& name : ListFolder(plan.GetResultFolder(shard)))
        files.push_back(ToUTF8(name));
    fs::create_directories(plan.GetResultFolder(shard));
    CWholeFile file(plan.GetFinishedFile(shard));
    file.Write(json {
                   {"plan",  plan.GetFacts().ID},
                   {"files", files             }
    }
                   .dump() +
               "\n");
    file.Finish();
}

bool Reopen(const CPlan& plan, int64_t shard)
{
    std::error_code error;
    fs::remove(plan.GetFinishedFile(shard), error);
    return !error;
}
