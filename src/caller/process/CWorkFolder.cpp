#include "caller/process/CWorkFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>

CWorkFolder::CWorkFolder()
{
    std::string name = std::filesystem::temp_directory_path() / "zivora-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        throw std::filesystem::filesystem_error("no folder for temporary files can be made", name,
                                                std::error_code(errno, std::generic_category()));
    m_path = name;
}

CWorkFolder::~CWorkFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}
