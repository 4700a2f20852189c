#include "system/component/ZVArchiveNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using Kind = ZVArchiveEntryKind;

constexpr ZVArchiveEntry File(const char* path)
{
    return {Kind::File, path, nullptr};
}

constexpr ZVArchiveEntry Folder(const char* path)
{
    return {Kind::Folder, path, nullptr};
}

constexpr ZVArchiveEntry Link(const char* path, const char* target)
{
    return {Kind::SymbolicLink, path, target};
}

constexpr ZVArchiveEntry Hard(const char* path, const char* target)
{
    return {Kind::HardLink, path, target};
}

// The reason of the first entry that is refused; empty when all are allowed.
std::string Refuse(const std::vector<ZVArchiveEntry>& entries)
{
    ZVArchiveNames names;
    for (const ZVArchiveEntry& entry : entries)
        if (const char* reason = names.Add(entry))
            return reason;
    return "";
}

TEST(ZVArchiveNames, AllowsWhatStaysInTheFolder)
{
    const std::vector<ZVArchiveEntry> rows[] = {
        {Folder("./"),      File("./a..b"), Folder("x/"), File("x//./y")},
        {            File("x/y"),      Folder("x"),   Folder("x/")            },
        { Link("link", "nowhere/file"),     Link("a/b/c",             "./../../x/./y"),     Link("...", "a")},
        {              File("a"),           Hard("./b",               "./a"),         Hard("c/d",           "b")},
    };
    for (const auto& entries : rows)
        EXPECT_EQ(Refuse(entries), "") << entries.back().Path;
}

TEST(ZVArchiveNames, RefusesWhatLeavesTheFolderOrCollides)
{
    std::string deepName;
    for (int depth = 0; depth < 100; ++depth)
        deepName += "x/";
    const struct
    {
        const char* Reason;
        std::vector<ZVArchiveEntry> Entries;
    } rows[] = {
        {"the name leaves the folder",                       {File(nullptr)}                                  },
        {"the name leaves the folder",                       {File("/etc/passwd")}                            },
        {"the name leaves the folder",                       {File("a/../../x")}                              },
        {"the name leaves the folder",                       {Folder("a/..")}                                 },
        {"the name leaves the folder",                       {File("./")}                                     },
        {"it is neither a file nor a folder nor a link",     {{Kind::Other, "pipe", nullptr}}                 },
        {"it lies too deep in folders",                      {File(deepName.c_str())}                         },
        {"the link leads nowhere",                           {Link("a", nullptr)}                             },
        {"the link leads nowhere",                           {Link("a", "")}                                  },
        {"the link leaves the folder",                       {Link("a", "/etc/passwd")}                       },
        {"the link leaves the folder",                       {Link("a", "..")}                                },
        {"the link leaves the folder",                       {Link("a/b", "../../x")}                         },
        {"the link leaves the folder",                       {Link("a/b/up", "../.."), Link("c", "a/b/up/..")}},
        {"the link leaves the folder",                       {File("a"), Hard("b", "../a")}                   },
        {"the link leads to what is no file of the archive", {Hard("b", "a"), File("a")}                      },
        {"the link leads to what is no file of the archive", {Folder("a"), Hard("b", "a")}                    },
        {"the link leads to what is no file of the archive", {Link("d/e/a", "../../x"), Hard("b", "d/e/a")}   },
        {"the link leads to what is no file of the archive", {Link("a", "d"), File("d/f"), Hard("b", "a/f")}  },
        {"the name is there twice",                          {File("a/b"), File("./a//b")}                    },
        {"the name is there twice",                          {File("a"), Link("a", "b")}                      },
        {"a file or link has the name of a folder",          {File("a"), File("a/b")}                         },
        {"a file or link has the name of a folder",          {Link("a", "b"), File("a/b")}                    },
        {"a file or link has the name of a folder",          {File("a/b"), File("a")}                         },
    };
    for (const auto& row : rows)
        EXPECT_EQ(Refuse(row.Entries), row.Reason) << testing::PrintToString(row.Entries.back().Path);
}

TEST(ZVArchiveNames, RefusesMoreNamesThanThereIsMemoryFor)
{
    ZVArchiveNames names;
    const std::string folder(1 << 20, 'x');
    std::string reason;
    for (int number = 0; number < 100 && reason.empty(); ++number)
        if (const char* text = names.Add(File((folder + std::to_string(number)).c_str())))
            reason = text;
    EXPECT_EQ(reason, "it has too many names");
}
}
