#include "caller/commands/CScanCommand.h"

#include "caller/commands/CSignals.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>

namespace fs = std::filesystem;

fs::path GetDefaultCatalog()
{
    const char* const data = getenv("XDG_DATA_HOME");
    const char* const home = getenv("HOME");
    if (data != nullptr && *data == '/')
        return fs::path(data) / "zivora" / "catalog.db";
    if (home == nullptr || *home != '/')
        throw std::runtime_error("there is no home folder for the catalog: name one with --to");
    return fs::path(home) / ".local" / "share" / "zivora" / "catalog.db";
}

ExitStatus CScanCommand::Run(const CCallerOptions& caller) const
{
    std::vector<fs::path> folders;
    for (const std::string& folder : Folders)
    {
        if (!fs::is_directory(folder))
            throw std::runtime_error("there is no folder " + folder);
        folders.push_back(fs::canonical(folder));
    }
    CCatalog catalog(Catalog.empty() ? GetDefaultCatalog() : fs::path(Catalog), CCatalog::Access::Change);
    const CScanCounts counts = CScan(catalog, caller, Options).Run(folders);
    std::cout << counts.Done << " films looked at, " << counts.Failed << " of them failed; " << counts.Unchanged << " unchanged, "
              << counts.Vanished << " vanished\n";
    if (CSignals::IsInterrupted())
        return Interrupted;
    return counts.Failed == 0 ? AllDone : SomeFailed;
}
