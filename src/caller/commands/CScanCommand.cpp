#include "caller/commands/CScanCommand.h"

#include "caller/catalog/DefaultCatalog.h"
#include "caller/commands/CheckName.h"
#include "caller/output/Messages.h"
#include "caller/plan/CPlanWriter.h"
#include "caller/process/CSignals.h"
#include "caller/scan/CScan.h"

#include <iostream>
#include <stdexcept>

namespace
{
namespace fs = std::filesystem;

// More than engines for clusters take as one array of jobs.
constexpr int64_t MaximumShards = 100'000;

// What a plan leaves to the machines that work on it.
constexpr const char* OptionsOfWork[] = {"--jobs", "--time-limit", "--memory", "--worker"};

// The folders that are there. Of the others it is said that they are not; when there is none at all, the first reason is thrown.
std::vector<fs::path> FindFolders(const std::vector<std::string>& names)
{
    std::vector<fs::path> folders;
    std::vector<std::string> faults;
    for (const std::string& name : names)
    {
        std::error_code error;
        const fs::path folder = fs::canonical(name, error);
        if (!error && fs::is_directory(folder, error))
            folders.push_back(folder);
        else
            faults.push_back(error == std::errc::no_such_file_or_directory ? "there is no folder " + name
                             : error                                       ? name + ": " + error.message()
                                                                           : name + " is no folder");
    }
    if (folders.empty())
        throw std::runtime_error(faults.front());
    for (const std::string& fault : faults)
        SayError(fault);
    return folders;
}

// The end of both lines.
std::string DescribeUnreadable(int64_t count)
{
    return count == 0 ? ""
                      : "; " + std::to_string(count) + (count == 1 ? " file or folder" : " files or folders") + " cannot be read";
}

std::string Describe(const CScanCounts& counts)
{
    const auto count = [](int64_t number) { return std::to_string(number); };
    std::string text = count(counts.Done) + (counts.Done == 1 ? " film" : " films") + " looked at, " + count(counts.Failed) +
                       " failed; " + count(counts.Unchanged) + " unchanged, " + count(counts.Vanished) + " vanished";
    if (counts.FailedBefore > 0)
        text += "; " + count(counts.FailedBefore) + " of the unchanged failed before (--retry tries them again)";
    return text + DescribeUnreadable(counts.Unreadable);
}

std::string Describe(const CPlanCounts& counts, int64_t shards)
{
    const auto count = [](int64_t number, const char* what)
    { return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s"); };
    std::string text = count(counts.Films, "film") + " in " + count(shards, "shard");
    text += counts.Unchanged == 0 ? "" : "; " + std::to_string(counts.Unchanged) + " unchanged";
    return text + DescribeUnreadable(counts.Unreadable);
}

std::string MakeJSON(const CPlanCounts& counts, int64_t shards)
{
    return nlohmann::json {
        {"films",      counts.Films     },
        {"shards",     shards           },
        {"unchanged",  counts.Unchanged },
        {"unreadable", counts.Unreadable}
    }
        .dump();
}

std::string MakeJSON(const CScanCounts& counts)
{
    return nlohmann::json {
        {"done",          counts.Done        },
        {"failed",        counts.Failed      },
        {"unchanged",     counts.Unchanged   },
        {"failed before", counts.FailedBefore},
        {"vanished",      counts.Vanished    },
        {"unreadable",    counts.Unreadable  }
    }
        .dump();
}
}

void CScanCommand::AddOptions(CLI::App& app)
{
    app.add_option("FOLDER", m_folders, "Folders with films")->required()->check(CheckName);
    app.add_option("--to", m_catalog, "The catalog; by default the user's own")->check(CheckName)->type_name("CATALOG");
    app.add_flag("--retry", m_triesAgain, "Try films again that failed before");
    app.add_flag("--json", m_isJSON, "The counts at the end as an object");
    m_tasks.AddTo(app);
    m_worker.AddTo(app, CWorkerOptions::Jobs::Several);
    const std::string group = "For several machines";
    CLI::Option* const plan =
        app.add_option("--plan", m_plan,
                       "Look at no film, but write a folder with the list of them, for zivora work; with --to without those "
                       "that the catalog has as they are")
            ->type_name("PLAN")
            ->group(group);
    CLI::Option* const shards = app.add_option("--shards", m_shards, "Parts of the plan, which are worked on one by one")
                                    ->check(CLI::Range(int64_t {1}, MaximumShards).description(""))
                                    ->type_name("N")
                                    ->group(group);
    plan->needs(shards);
    shards->needs(plan);
    for (const char* const name : OptionsOfWork)
        plan->excludes(app.get_option(name));
}

ExitStatus CScanCommand::Run()
{
    if (!m_plan.empty())
        return WritePlan();
    const std::vector<fs::path> folders = FindFolders(m_folders);
    const CWorkerSettings settings = m_worker.GetSettings();
    CCatalog catalog(m_catalog.empty() ? GetDefaultCatalog() : fs::path(m_catalog), CCatalog::Access::Change);
    CScan scan(catalog, settings, {.Tasks = m_tasks.GetTasks(), .TriesAgain = m_triesAgain});
    const CScanCounts counts = scan.Run(folders);
    std::cout << (m_isJSON ? MakeJSON(counts) : Describe(counts)) << '\n';
    if (CSignals::IsInterrupted())
        return Interrupted;
    return counts.Failed + counts.Unreadable == 0 && folders.size() == m_folders.size() ? AllDone : SomeFailed;
}

ExitStatus CScanCommand::WritePlan()
{
    if (m_triesAgain && m_catalog.empty())
        throw CLI::ValidationError("--retry", "a plan needs --to for it, the catalog that knows what failed");
    // A catalog that is not there yet has no film.
    std::optional<CCatalog> catalog;
    if (!m_catalog.empty() && fs::exists(m_catalog))
        catalog.emplace(m_catalog, CCatalog::Access::Read);
    const std::vector<fs::path> folders = FindFolders(m_folders);
    CPlanWriter writer({
        .Folder = m_plan,
        .FilmFolders = folders,
        .Shards = m_shards,
        .Options = {.Tasks = m_tasks.GetTasks(), .TriesAgain = m_triesAgain},
        .Catalog = catalog ? &*catalog : nullptr,
    });
    const CPlanCounts counts = writer.Write();
    if (CSignals::IsInterrupted())
        return Interrupted;
    std::cout << (m_isJSON ? MakeJSON(counts, m_shards) : Describe(counts, m_shards)) << '\n';
    return counts.Unreadable == 0 && folders.size() == m_folders.size() ? AllDone : SomeFailed;
}
