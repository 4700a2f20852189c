#include "caller/catalog/DefaultCatalog.h"

#include <cstdlib>
#include <stdexcept>

namespace fs = std::filesystem;

fs::path GetDefaultCatalog()
{
    const char* const data = getenv("XDG_DATA_HOME");
    const char* const home = getenv("HOME");
    // A folder that is not absolute does not count, as the base directory specification of freedesktop.org has it.
    if (data != nullptr && *data == '/')
        return fs::path(data) / "zivora" / "catalog.db";
    if (home == nullptr || *home != '/')
        throw std::runtime_error("there is no home folder for the catalog: name a catalog");
    return fs::path(home) / ".local" / "share" / "zivora" / "catalog.db";
}
