#include "caller/commands/CScanCommand.h"

#include "caller/catalog/DefaultCatalog.h"
#include "caller/commands/CheckName.h"
#include "caller/process/CSignals.h"
#include "caller/scan/CScan.h"

#include <iostream>
#include <stdexcept>

namespace
{
namespace fs = std::filesystem;

std::vector<fs::path> FindFolders(const std::vector<std::string>& names)
{
    std::vector<fs::path> folders;
    for (const std::string& name : names)
    {
        if (!fs::is_directory(name))
            throw std::runtime_error(fs::exists(name) ? name + " is no folder" : "there is no folder " + name);
        folders.push_back(fs::canonical(name));
    }
    return folders;
}

std::string Describe(const CScanCounts& counts)
{
    const auto count = [](int64_t number) { return std::to_string(number); };
    std::string text = count(counts.Done) + (counts.Done == 1 ? " film" : " films") + " looked at, " + count(counts.Failed) +
                       " failed; " + count(counts.Unchanged) + " unchanged, " + count(counts.Vanished) + " vanished";
    if (counts.FailedBefore > 0)
        text += "; " + count(counts.FailedBefore) + " of the unchanged failed before (--retry tries them again)";
    if (counts.Unreadable > 0)
        text += "; " + count(counts.Unreadable) + (counts.Unreadable == 1 ? " file or folder" : " files or folders") +
                " cannot be read";
    return text;
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
    app.add_option("--to", m_catalog, "The catalog; by default the user's own")->type_name("CATALOG");
    app.add_flag("--retry", m_triesAgain, "Try films again that failed before");
    app.add_flag("--json", m_isJSON, "The counts at the end as an object");
    m_tasks.AddTo(app);
    m_worker.AddTo(app, CWorkerOptions::Jobs::Several);
}

ExitStatus CScanCommand::Run()
{
    const std::vector<fs::path> folders = FindFolders(m_folders);
    const CWorkerSettings settings = m_worker.GetSettings();
    CCatalog catalog(m_catalog.empty() ? GetDefaultCatalog() : fs::path(m_catalog), CCatalog::Access::Change);
    CScan scan(catalog, settings, {.Tasks = m_tasks.GetTasks(), .TriesAgain = m_triesAgain});
    const CScanCounts counts = scan.Run(folders);
    std::cout << (m_isJSON ? MakeJSON(counts) : Describe(counts)) << '\n';
    if (CSignals::IsInterrupted())
        return Interrupted;
    return counts.Failed + counts.Unreadable == 0 ? AllDone : SomeFailed;
}
