#include "caller/commands/CReportCommand.h"

#include "caller/commands/CScanCommand.h"
#include "caller/output/FilmBlock.h"
#include "caller/report/CReport.h"

#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace
{
namespace fs = std::filesystem;

constexpr char DefaultPage[] = "films.html";

// A single argument can be either.
bool IsPage(const fs::path& path)
{
    return path == "-" || path.extension() == ".html" || path.extension() == ".htm";
}

void Tell(std::ostream& output, const fs::path& page, const CReportCounts& counts, bool asJSON)
{
    if (asJSON)
    {
        nlohmann::json line {
            {"page",   ToUTF8(page) },
            {"films",  counts.Films },
            {"failed", counts.Failed}
        };
        if (const std::string escaped = EscapeBytes(page); !escaped.empty())
            line["page bytes"] = escaped;
        output << line.dump() << '\n';
        return;
    }
    output << (page == "-" ? "standard output" : MakePlain(ToUTF8(page))) << ": " << counts.Films
           << (counts.Films == 1 ? " film" : " films");
    if (counts.Failed > 0)
        output << ", " << counts.Failed << " of which failed";
    output << '\n';
}
}

ExitStatus CReportCommand::Run() const
{
    const bool hasOnlyPage = Page.empty() && IsPage(Catalog);
    const fs::path catalogPath = Catalog.empty() || hasOnlyPage ? GetDefaultCatalog() : fs::path(Catalog);
    const fs::path pagePath = hasOnlyPage ? Catalog : Page.empty() ? DefaultPage : Page;
    if (!fs::exists(catalogPath))
        throw std::runtime_error("there is no catalog " + catalogPath.string() + ": zivora scan makes it");
    const CCatalog catalog(catalogPath, CCatalog::Access::Read);
    CPageFile file(pagePath);
    const std::optional<CReportCounts> counts = CReport(catalog, file).Write();
    if (!counts)
        return Interrupted;
    file.Finish();
    // Standard output has the page then.
    Tell(pagePath == "-" ? std::cerr : std::cout, pagePath, *counts, AsJSON);
    return AllDone;
}
