#include "system/file/ZVFileFinder.h"

#include "contracts/IZVStringTools.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "system/file/ZVFileError.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <cerrno>
#include <string>
#include <string_view>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileFinder::Find"};

// The characters that mean something to glob.
constexpr std::string_view PatternCharacters = "?[]*\\";
// The same without the wild cards that are meant.
constexpr std::string_view BracketCharacters = "[]\\";

std::string Quoted(std::string_view bytes, std::string_view characters)
{
    std::string quoted;
    for (const char byte : bytes)
    {
        if (characters.find(byte) != std::string_view::npos)
            quoted.push_back('\\');
        quoted.push_back(byte);
    }
    return quoted;
}

bool HasWildcards(const ZVString& text)
{
    IZVStringTools* tools = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetTools(true);
    return tools != nullptr && tools->HasWildcards(text);
}

// The pattern that makes glob do what the path asks for.
std::string MakePattern(const ZVString& path, ZVFind what)
{
    std::string bytes = ZVNativePath(path).GetBytes();
    if (what == ZVFind::FolderContent && !bytes.ends_with('/'))
        bytes.push_back('/');
    if (bytes.ends_with('/'))
        return Quoted(bytes, PatternCharacters) + "*";
    const size_t nameStart = bytes.rfind('/') + 1;  // 0 without a folder
    const std::string_view folder = std::string_view(bytes).substr(0, nameStart);
    const std::string_view name = std::string_view(bytes).substr(nameStart);
    const bool isWild = HasWildcards(path.Mid(ZVPathLayout::Of(path).NameStart));
    return Quoted(folder, PatternCharacters) + Quoted(name, isWild ? BracketCharacters : PatternCharacters);
}

// glob calls this for a folder that it cannot read. The listing goes on without it.
int OnFolderError(const char* path, int error)
{
    errno = error;
    if (error != ENOENT)
        ZVLogFileError(Source, "Error %d reading folder: %s", ZVNativePath::ToText(path));
    return 0;
}
}

bool ZVFileFinder::Find(const ZVFilename& pattern, ZVFind what)
{
    Release();
    m_pattern = pattern;
    if (pattern.IsEmpty())
        return false;
    const int result = glob(MakePattern(pattern.GetPathOnly(), what).c_str(), GLOB_MARK, OnFolderError, &m_result);
    m_isFound = result == 0 || result == GLOB_NOMATCH;
    if (!m_isFound)
        ZVLogFileError(Source, "Error %d listing: %s", pattern.GetPathOnly());
    return m_isFound;
}

bool ZVFileFinder::GetNext(ZVFileInfo& info)
{
    while (m_next < m_result.gl_pathc)
        if (info.LoadNative(m_result.gl_pathv[m_next++]))
            return true;
    return false;
}

void ZVFileFinder::Release()
{
    globfree(&m_result);
    m_result = {};
    m_next = 0;
    m_isFound = false;
}
