#include "disc/recording/CRecordingPath.h"

#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVPathLayout.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace
{
// A stub whose address begins with one of these, in exactly this case, has paths that need no folder.
constexpr const wchar_t* KeepingStarts[] = {L"http://", L"m01p://", L"https://", L"m01ps://"};

bool KeepsPaths(const ZVString& stub)
{
    return std::any_of(std::begin(KeepingStarts), std::end(KeepingStarts),
                       [&stub](const wchar_t* start) { return stub.StartsWith(start); });
}

// The path with one "/" before each step and none elsewhere, and without the steps "." and "..". It cannot lead above the root,
// and no "://" is left in it.
ZVString ResolveSteps(const ZVString& path)
{
    std::vector<std::wstring_view> steps;
    std::wstring_view rest = path.View();
    while (!rest.empty())
    {
        const size_t end = std::min(rest.find(L'/'), rest.size());
        const std::wstring_view step = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (step.empty() || step == L".")
            continue;
        if (step != L"..")
            steps.push_back(step);
        else if (!steps.empty())
            steps.pop_back();
    }
    ZVString resolved;
    for (const std::wstring_view step : steps)
    {
        resolved.AppendCharacter(L'/');
        resolved.Append(step.data(), static_cast<int32_t>(step.size()));
    }
    return resolved;
}
}

bool CRecordingPath::IsLocal(const ZVString& path)
{
    const std::wstring_view text = path.View();
    const size_t schemeEnd = text.find(L"://");
    return schemeEnd == text.npos || schemeEnd == 0 || text.find_first_of(L"/\\") < schemeEnd;
}

CRecordingPath::Base::Base(const ZVFilename& stub) : m_keepsPaths(KeepsPaths(stub.GetFilename()))
{
    ZVString path = stub.GetFilename();
    ZVFilename::ClearFileScheme(path);
    const ZVFilename name = ZVFilename::FromPath(path);
    m_folder = name.GetDirectory();
    if (!IsLocal(path))
    {
        m_root = name.GetDrive();
        m_folder = m_folder.Mid(m_root.GetLength());
    }
    else if (!m_folder.StartsWith(L'/'))
        m_folder = ZVPathLayout::WithClosingSlash(ZVFileSystem::GetDirectoryWorking()) + m_folder;
}

ZVString CRecordingPath::Base::MakeAbsolute(const ZVString& path) const
{
    if (m_keepsPaths || path.IsEmpty() || path.StartsWith(L'/'))
        return path;
    ZVString joined = m_folder + L"/" + path;
    // A backslash separates steps wherever a path reaches the system, so it does here.
    ZVFilename::ConvertPathStyle(joined, ZVPathStyle::Backslashes, ZVPathStyle::ForwardSlashes);
    return m_root + ResolveSteps(joined);
}
