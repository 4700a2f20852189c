#include "caller/commands/CWorkCommand.h"

#include "caller/commands/CheckName.h"
#include "caller/output/Messages.h"
#include "caller/plan/CShardWork.h"
#include "caller/process/CSignals.h"

#include <iostream>

namespace
{
std::string Describe(const CShardCounts& counts, const std::string& shard)
{
    const auto count = [](int64_t number) { return std::to_string(number); };
    if (counts.IsFinished && counts.Done + counts.Gone == 0)
        return shard + ": nothing to do, it was finished before";
    std::string text = shard + ": " + count(counts.Done) + (counts.Done == 1 ? " film" : " films") + " looked at, " +
                       count(counts.Failed) + " failed";
    text += counts.Before == 0 ? "" : "; " + count(counts.Before) + " done before";
    text += counts.Gone == 0 ? "" : "; " + count(counts.Gone) + " not there any more";
    return text + (counts.IsFinished ? "" : "; not finished");
}

std::string MakeJSON(const CShardCounts& counts, int64_t shard)
{
    return nlohmann::json {
        {"shard",       shard             },
        {"done",        counts.Done       },
        {"failed",      counts.Failed     },
        {"before",      counts.Before     },
        {"gone",        counts.Gone       },
        {"unreachable", counts.Unreachable},
        {"finished",    counts.IsFinished }
    }
        .dump();
}
}

void CWorkCommand::AddOptions(CLI::App& app)
{
    app.add_option("PLAN", m_plan, "The folder that zivora scan --plan has written")->required()->check(CheckName);
    app.add_option("SHARD", m_shard, "The number of the shard, from 1")
        ->required()
        ->check(CLI::Validator(CLI::PositiveNumber).description(""));
    app.add_flag("--json", m_isJSON, "The counts at the end as an object");
    m_worker.AddTo(app, CWorkerOptions::Jobs::Several);
}

ExitStatus CWorkCommand::Run()
{
    const CPlan plan(m_plan);
    if (m_shard > plan.GetFacts().Shards)
        throw CLI::ValidationError("SHARD", "the plan has " + std::to_string(plan.GetFacts().Shards) + " shards");
    const CShardCounts counts = CShardWork(plan, m_shard, m_worker.GetSettings()).Run();
    const std::string name = "shard " + std::to_string(m_shard) + " of " + std::to_string(plan.GetFacts().Shards);
    std::cout << (m_isJSON ? MakeJSON(counts, m_shard) : Describe(counts, name)) << '\n';
    if (CSignals::IsInterrupted() && !counts.IsFinished)
        return Interrupted;
    return counts.IsFinished && counts.Failed == 0 ? AllDone : SomeFailed;
}
