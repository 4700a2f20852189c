#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

enum class ZVArchiveEntryKind
{
    File,
    Folder,
    SymbolicLink,
    HardLink,
    Other,
};

// One entry as an archive describes it.
struct ZVArchiveEntry
{
    ZVArchiveEntryKind Kind;
    const char* Path;              // null when the archive has none that can be read
    const char* Target = nullptr;  // what a link leads to; null for everything else
};

// The names in an archive, entry by entry, and the rules that keep it within the folder that it is unpacked into: no name occurs
// twice or leads through a file or link, a hard link leads to a file of the archive that came before it, and a symbolic link
// leads to a place in the folder.
class ZVArchiveNames
{
public:
    // Takes the next entry. Returns null when it is allowed, and otherwise the reason why the archive is to be refused.
    const char* Add(const ZVArchiveEntry& entry);

private:
    const char* CheckLink(const ZVArchiveEntry& entry, size_t depth) const;
    const char* AddName(const std::string& name, ZVArchiveEntryKind kind);

    std::unordered_map<std::string, ZVArchiveEntryKind> m_kinds;  // by plain name: steps with a "/" between them
    size_t m_size = 0;                                            // bytes of all names
};
