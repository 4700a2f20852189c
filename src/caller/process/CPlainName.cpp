#include "caller/process/CPlainName.h"

#include <algorithm>
#include <cctype>
#include <stdlib.h>

namespace
{
// What means something else anywhere in a name.
constexpr const char* Marks[] = {"\\", "://"};

// What is dropped at the end of an argument.
constexpr char DroppedEnds[] = " \t\r\n\"";

// A number of one to five characters after a semicolon at the end of an extension is a note about the file.
constexpr size_t MaximumNote = 5;

bool HasNote(const std::string& path)
{
    const size_t mark = path.rfind(';');
    const size_t point = path.rfind('.');
    if (mark == std::string::npos || (point != std::string::npos && point > mark))
        return false;
    const size_t length = path.size() - mark - 1;
    return length >= 1 && length <= MaximumNote;
}

// The letters and digits after the last full stop of the name, with it.
std::string GetExtension(const std::filesystem::path& path)
{
    const std::string extension = path.extension();
    const auto end = std::find_if_not(extension.begin() + (extension.empty() ? 0 : 1), extension.end(),
                                      [](unsigned char letter) { return isalnum(letter) != 0; });
    return {extension.begin(), end};
}
}

bool IsPlainName(const std::string& path)
{
    // A file in the root folder may have the name of a command.
    return std::ranges::none_of(Marks, [&](const char* mark) { return path.find(mark) != std::string::npos; }) &&
           path.find_last_of(DroppedEnds) != path.size() - 1 && !HasNote(path) && path.find('/', 1) != std::string::npos;
}

CPlainName::CPlainName(const std::filesystem::path& path, const CWorkFolder& folder)
    : m_name(std::filesystem::absolute(path).lexically_normal())
{
    if (m_name.size() > 1 && m_name.ends_with('/'))
        m_name.pop_back();
    m_real = m_name;
    if (IsPlainName(m_name))
        return;
    std::string place = folder.GetPath() / "link-XXXXXX";
    if (mkdtemp(place.data()) == nullptr)
        return;
    m_link = std::filesystem::path(place) / ("film" + GetExtension(m_name));
    std::error_code error;
    std::filesystem::create_symlink(m_name, m_link, error);
    if (!error)
        m_name = m_link;
}

std::string CPlainName::TellReal(std::string text) const
{
    for (size_t place = 0; !m_link.empty() && (place = text.find(m_name, place)) != std::string::npos; place += m_real.size())
        text.replace(place, m_name.size(), m_real);
    return text;
}

CPlainName::~CPlainName()
{
    std::error_code ignored;
    if (!m_link.empty())
        std::filesystem::remove_all(m_link.parent_path(), ignored);
}
