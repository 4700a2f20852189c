#include "system/file/ZVFileSearch.h"

#include "FileFixture.h"
#include "system/file/ZVFileFinder.h"
#include "system/file/ZVFileSystem.h"
#include "system/thread/FakeStringTools.h"

namespace
{
class ZVFileSearchTest : public FileFixture
{
protected:
    // The paths without the folder in front, with a blank behind each.
    std::string Shorten(const ZVStringArray& paths) const
    {
        std::string list;
        for (const ZVString& path : paths)
            list += Bytes(path).substr(m_folder.size()) + " ";
        return list;
    }

    std::string Find(const std::string& pattern, bool listFolder = false) const
    {
        ZVFileFinder finder;
        EXPECT_TRUE(finder.Find(NameAt(pattern), listFolder));
        ZVStringArray paths;
        for (ZVFileInfo info; finder.GetNext(info);)
            paths.Add(info.GetPath());
        return Shorten(paths);
    }
};

TEST_F(ZVFileSearchTest, AFolderIsListedWithoutHiddenNames)
{
    Put("a/b/file");
    Put("a/.hidden");
    Link("nothing", "a/c");
    EXPECT_EQ(Find("a/") + "| " + Find("a", true), "a/b/ a/c | a/b/ a/c ");
    EXPECT_EQ(Find("a") + Find("missing/") + Find("a/c/"), "a/ ");
    ZVFileFinder finder;
    ZVFileInfo info;
    EXPECT_FALSE(finder.Find(ZVFilename(), true));
    EXPECT_TRUE(finder.Find(NameAt("a/")) && finder.GetNext(info) && info.IsDirectory() && info.GetName() == L"b");
    EXPECT_TRUE(finder.GetNext(info) && S_ISLNK(info.GetMode()) && !finder.GetNext(info));
    EXPECT_TRUE(finder.Find(NameAt("a/b/")) && std::filesystem::remove(At("a/b/file")));
    EXPECT_FALSE(finder.GetNext(info) || info.IsFound() || info.IsDirectory()) << "what vanishes after the listing";
    // A name that a text would not survive.
    Put("semicolon/film.mkv;1", "12345");
    ASSERT_TRUE(finder.Find(NameAt("semicolon/")));
    ASSERT_TRUE(finder.GetNext(info));
    EXPECT_EQ(info.GetFilename().GetFileSize(), 5);
    chmod(At("a").c_str(), 0);
    const auto listClosed = [&]
    {
        EXPECT_EQ(Find("a/"), "");
        ExpectLogged("1|ZVFileFinder::Find|Error 13 reading folder: ");
    };
    AsNobody(listClosed);
}

TEST_F(ZVFileSearchTest, CharactersOfPatternsStandForThemselves)
{
    Put("a/file [1]");
    for (const std::string folder : {"[a]/", "?/", "*/", "a\\b/"})
    {
        Put(folder + "file [1]");
        EXPECT_EQ(Find(folder), folder + "file [1] ");
    }
    EXPECT_EQ(Find("a/file [1]") + Find("?/f*"), "a/file [1] ") << "nothing is a wild card without the tools library";
    FakeStringTools tools;
    g_pZVTools = &tools;
    EXPECT_EQ(Find("?/f*") + Find("a/????\?[1]") + Find("a/[f]*"), "?/file [1] a/file [1] ");
}

TEST_F(ZVFileSearchTest, FiltersAndFlagsDecideWhatIsFound)
{
    for (const char* name : {"a.vob", "ifo", "sub/b.Ifo", "sub/c.x.ifox", "VIDEO_TS.IFO"})
        Put(std::string("disc/") + name, name);
    chmod(At("disc/a.vob").c_str(), 0755);
    const ZVString folder = TextAt("disc");

    ZVFileSearch all(folder);
    EXPECT_EQ(Shorten(all.GetResults()), "disc/VIDEO_TS.IFO disc/a.vob disc/ifo ");
    ZVFileSearch some(folder, L"ifo", true);
    some.AddFilter(L"");
    some.AddFilter(L"VOB");
    EXPECT_EQ(Shorten(some.GetResults()), "disc/VIDEO_TS.IFO disc/a.vob disc/sub/b.Ifo ");
    EXPECT_EQ(some.GetTotalSize(), 12 + 5 + 9);
    ZVFileSearch others(folder, L"none", true);
    others.SetIncludeFolders(true);
    EXPECT_EQ(Shorten(others.GetResults()), "disc/sub/ ");
    ZVFileSearch plain(folder, L"", true);
    plain.SetSkipMask(S_IXUSR);
    EXPECT_EQ(Shorten(plain.GetResults()), "disc/VIDEO_TS.IFO disc/ifo ");

    ZVStringArray out;
    ZVStringArray extensions;
    extensions.Add(L"ifo");
    EXPECT_EQ(ZVFileSystem::FindFiles(folder, out, false, extensions), 1);
    EXPECT_EQ(all.GetResults(out), 4) << "behind what is there";
    EXPECT_EQ(ZVFileSystem::FindFiles(L"", out, true, {}), 0);
    const std::atomic<bool> isCancelled {true};
    ZVFileSearch cancelled(folder);
    cancelled.SetCancelFlag(&isCancelled);
    cancelled.SetResultArray(&out);
    EXPECT_EQ(cancelled.GetResults(out), 0);
}

TEST_F(ZVFileSearchTest, AWalkSurvivesLoopsAndDepth)
{
    Put("a/b/file");
    Link("..", "a/b/loop");
    Link(".", "a/self");
    Link("b", "a/twice");
    ZVFileSearch loops(TextAt("a"), L"", true);
    EXPECT_EQ(Shorten(loops.GetResults()), "a/b/file ");

    std::string deep = "d/file";
    while (deep.size() < 600)
        deep.insert(0, "d/");
    Put(deep);
    ZVStringArray out;
    EXPECT_EQ(ZVFileSystem::FindFiles(TextAt("d"), out, true, {}), 1);
}
}
