#include "system/component/ZVArchiveNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using enum ZVArchiveEntryKind;

// The reason of the first entry that is refused; empty when all are allowed.
std::string Refuse(const std::vector<ZVArchiveEntry>& entries)
{
    ZVArchiveNames names;
    for (const ZVArchiveEntry& entry : entries)
        if (const char* reason = names.Add(entry))
            return reason;
    return "";
}

TEST(ZVArchiveNames, RefusesWhatLeavesTheFolderOrCollides)
{
    const std::string large(20 << 20, 'x');
    std::string deep;
    for (int depth = 0; depth < 100; ++depth)
        deep += "x/";
    // clang-format off
    const struct
    {
        const char* Reason;
        std::vector<ZVArchiveEntry> Entries;
    } rows[] = {
        {"the name leaves the folder", {{File, nullptr}}},
        {"the name leaves the folder", {{File, "/etc/passwd"}}},
        {"the name leaves the folder", {{File, "a/../../x"}}},
        {"the name leaves the folder", {{Folder, "a/.."}}},
        {"the name leaves the folder", {{File, "./"}}},
        {"it is neither a file nor a folder nor a link", {{Other, "pipe"}}},
        {"it lies too deep in folders", {{File, deep.c_str()}}},
        {"it has too many names", {{File, large.c_str()}}},
        {"the link leads nowhere", {{SymbolicLink, "a"}}},
        {"the link leaves the folder", {{SymbolicLink, "a", "/etc/passwd"}}},
        {"the link leaves the folder", {{SymbolicLink, "a/b", "../../x"}}},
        {"the link leaves the folder", {{SymbolicLink, "a/b/up", "../.."}, {SymbolicLink, "c", "a/b/up/.."}}},
        {"the link leaves the folder", {{File, "a"}, {HardLink, "b", "../a"}}},
        {"the link leads to what is no file of the archive", {{HardLink, "b", "a"}, {File, "a"}}},
        {"the link leads to what is no file of the archive", {{SymbolicLink, "d/a", "../x"}, {HardLink, "b", "d/a"}}},
        {"the name is there twice", {{File, "a/b"}, {File, "./a//b"}}},
        {"a file or link has the name of a folder", {{File, "a"}, {File, "a/b"}}},
        {"a file or link has the name of a folder", {{SymbolicLink, "a", "b"}, {File, "a/b"}}},
        {"a file or link has the name of a folder", {{File, "a/b"}, {File, "a"}}},
    };
    // clang-format on
    for (const auto& row : rows)
        EXPECT_EQ(Refuse(row.Entries), row.Reason) << "row " << &row - rows;
}
}
