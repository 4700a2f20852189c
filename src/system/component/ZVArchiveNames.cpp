#include "system/component/ZVArchiveNames.h"

#include <algorithm>
#include <string_view>

namespace
{
// No component needs a tenth of either. A made-up archive of a few kilobytes could fill the memory with names, or nest folders
// too deep to be deleted again.
constexpr size_t MaximumDepth = 64;
constexpr size_t MaximumSize = 16 << 20;

constexpr char LeavesFolder[] = "the name leaves the folder";
constexpr char LinkLeavesFolder[] = "the link leaves the folder";

// Cuts the first step off a path and returns it.
std::string_view TakeStep(std::string_view& path)
{
    const size_t length = std::min(path.find('/'), path.size());
    const std::string_view step = path.substr(0, length);
    path.remove_prefix(std::min(length + 1, path.size()));
    return step;
}

bool StaysInPlace(std::string_view step)
{
    return step.empty() || step == ".";
}

// The plain form of a path: steps with a "/" between them. False for an absolute path and for one with a ".." step.
bool MakePlain(const char* path, std::string& name)
{
    if (path == nullptr || *path == '/')
        return false;
    name.clear();
    for (std::string_view rest = path; !rest.empty();)
    {
        const std::string_view step = TakeStep(rest);
        if (step == "..")
            return false;
        if (StaysInPlace(step))
            continue;
        if (!name.empty())
            name += '/';
        name += step;
    }
    return true;
}

// Whether a symbolic link in a folder of that depth could lead above the root. It may climb only with its first steps: after a
// step through another link, ".." would mean the parent of whatever that link leads to, which the names do not tell.
bool LeadsOut(std::string_view target, size_t depth)
{
    bool mayClimb = true;
    if (target.starts_with('/'))
        return true;
    while (!target.empty())
    {
        const std::string_view step = TakeStep(target);
        if (StaysInPlace(step))
            continue;
        if (step != "..")
            mayClimb = false;
        else if (!mayClimb || depth-- == 0)
            return true;
    }
    return false;
}
}

const char* ZVArchiveNames::Add(const ZVArchiveEntry& entry)
{
    std::string name;
    if (!MakePlain(entry.Path, name))
        return LeavesFolder;
    if (entry.Kind == ZVArchiveEntryKind::Other)
        return "it is neither a file nor a folder nor a link";
    // Many archives begin with the folder that they were made from.
    if (name.empty())
        return entry.Kind == ZVArchiveEntryKind::Folder ? nullptr : LeavesFolder;
    const auto depth = static_cast<size_t>(std::ranges::count(name, '/'));
    if (depth > MaximumDepth)
        return "it lies too deep in folders";
    if (const char* reason = CheckLink(entry, depth))
        return reason;
    for (size_t end = name.find('/'); end != std::string::npos; end = name.find('/', end + 1))
        if (const char* reason = AddName(name.substr(0, end), ZVArchiveEntryKind::Folder))
            return reason;
    return AddName(name, entry.Kind);
}

const char* ZVArchiveNames::CheckLink(const ZVArchiveEntry& entry, size_t depth) const
{
    const bool isSymbolic = entry.Kind == ZVArchiveEntryKind::SymbolicLink;
    if (!isSymbolic && entry.Kind != ZVArchiveEntryKind::HardLink)
        return nullptr;
    if (entry.Target == nullptr || *entry.Target == '\0')
        return "the link leads nowhere";
    if (isSymbolic)
        return LeadsOut(entry.Target, depth) ? LinkLeavesFolder : nullptr;
    std::string target;
    if (!MakePlain(entry.Target, target))
        return LinkLeavesFolder;
    // A hard link to a symbolic link could have the archive write through it, outside of the folder.
    const auto found = m_kinds.find(target);
    const bool isFile =
        found != m_kinds.end() && (found->second == ZVArchiveEntryKind::File || found->second == ZVArchiveEntryKind::HardLink);
    return isFile ? nullptr : "the link leads to what is no file of the archive";
}

const char* ZVArchiveNames::AddName(const std::string& name, ZVArchiveEntryKind kind)
{
    const auto [place, isNew] = m_kinds.try_emplace(name, kind);
    if (isNew)
    {
        m_size += name.size();
        return m_size > MaximumSize ? "it has too many names" : nullptr;
    }
    const bool wasFolder = place->second == ZVArchiveEntryKind::Folder;
    const bool isFolder = kind == ZVArchiveEntryKind::Folder;
    if (wasFolder != isFolder)
        return "a file or link has the name of a folder";
    return isFolder ? nullptr : "the name is there twice";
}
