#include "caller/commands/CMergeCommand.h"

#include "caller/catalog/DefaultCatalog.h"
#include "caller/commands/CheckName.h"
#include "caller/output/Messages.h"
#include "caller/plan/CPlanMerge.h"
#include "caller/process/CSignals.h"

#include <iostream>

namespace
{
std::string CountFilms(int64_t count)
{
    return std::to_string(count) + (count == 1 ? " film" : " films");
}

std::string Describe(const CMergeCounts& counts)
{
    const auto more = [](int64_t count, const char* what) { return count == 0 ? "" : "; " + std::to_string(count) + what; };
    if (counts.Missing.empty() && counts.Taken + counts.Gone + counts.Newer == 0)
        return "nothing is new: all " + CountFilms(counts.Before) + " were taken before";
    return CountFilms(counts.Taken) + " taken, " + std::to_string(counts.Failed) + " of them failed" +
           more(counts.Before, " taken before") + more(counts.Newer, " known better by now") +
           more(counts.Gone, " not there any more");
}

std::string Describe(const CMissingShard& missing)
{
    const std::string name = "shard " + std::to_string(missing.Shard);
    if (missing.Films == missing.All)
        return name + " is missing, with " + CountFilms(missing.Films);
    return name + " is not finished: " + std::to_string(missing.Films) + " of " + CountFilms(missing.All) +
           (missing.Films == 1 ? " is" : " are") + " missing";
}

std::string MakeJSON(const CMergeCounts& counts)
{
    nlohmann::json missing = nlohmann::json::array();
    for (const CMissingShard& shard : counts.Missing)
        missing.push_back({
            {"shard", shard.Shard},
            {"films", shard.Films},
            {"of",    shard.All  }
        });
    return nlohmann::json {
        {"taken",   counts.Taken },
        {"failed",  counts.Failed},
        {"before",  counts.Before},
        {"newer",   counts.Newer },
        {"gone",    counts.Gone  },
        {"missing", missing      }
    }
        .dump();
}
}

void CMergeCommand::AddOptions(CLI::App& app)
{
    app.add_option("PLAN", m_plan, "The folder that zivora scan --plan has written")->required()->check(CheckName);
    app.add_option("--to", m_catalog, "The catalog; by default the user's own")->check(CheckName)->type_name("CATALOG");
    app.add_flag("--json", m_isJSON, "The counts as an object, with an array of the shards that are missing or not finished");
}

ExitStatus CMergeCommand::Run()
{
    const CPlan plan(m_plan);
    CCatalog catalog(m_catalog.empty() ? GetDefaultCatalog() : std::filesystem::path(m_catalog), CCatalog::Access::Change);
    const CMergeCounts counts = CPlanMerge(plan, catalog).Run();
    std::cout << (m_isJSON ? MakeJSON(counts) : Describe(counts)) << '\n';
    if (CSignals::IsInterrupted())
        return Interrupted;
    for (const CMissingShard& missing : counts.Missing)
        SayError(Describe(missing));
    return counts.Missing.empty() ? AllDone : SomeFailed;
}
