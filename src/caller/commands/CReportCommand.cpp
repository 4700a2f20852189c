#include "caller/commands/CReportCommand.h"

#include "caller/catalog/DefaultCatalog.h"
#include "caller/commands/CheckName.h"
#include "caller/output/Messages.h"
#include "caller/report/CReport.h"

#include <filesystem>
#include <iostream>

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

void CReportCommand::AddOptions(CLI::App& app)
{
    app.add_option("CATALOG", m_catalog, "The catalog; by default the user's own")->check(CheckName);
    app.add_option("PAGE", m_page, "The page, by default films.html in this folder; - for standard output");
    app.add_flag("--json", m_isJSON, "The name of the page and the counts as an object");
}

ExitStatus CReportCommand::Run()
{
    const bool hasOnlyPage = m_page.empty() && IsPage(m_catalog);
    const fs::path catalogPath = m_catalog.empty() || hasOnlyPage ? GetDefaultCatalog() : fs::path(m_catalog);
    const fs::path pagePath = hasOnlyPage ? m_catalog : m_page.empty() ? DefaultPage : m_page;
    const CCatalog catalog(catalogPath, CCatalog::Access::Read);
    CPageFile file(pagePath);
    const std::optional<CReportCounts> counts = CReport(catalog, file).Write();
    if (!counts)
        return Interrupted;
    file.Finish();
    // Standard output has the page then.
    Tell(pagePath == "-" ? std::cerr : std::cout, pagePath, *counts, m_isJSON);
    return AllDone;
}
