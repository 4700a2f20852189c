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
    // The paths without the folder of the test.
    std::vector<std::string> Shorten(const ZVStringArray& paths) const
    {
        std::vector<std::string> list;
        for (const ZVString& path : paths)
            list.push_back(Bytes(path).substr(m_folder.size()));
        return list;
    }

    std::vector<std::string> Find(const std::string& pattern, ZVFind what = ZVFind::Matches) const
    {
        ZVFileFinder finder;
        EXPECT_TRUE(finder.Find(NameAt(pattern), what));
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
    EXPECT_THAT(Find("a/"), ElementsAre("a/b/", "a/c"));
    EXPECT_THAT(Find("a", ZVFind::FolderContent), ElementsAre("a/b/", "a/c"));
    EXPECT_THAT(Find("a"), ElementsAre("a/"));
    EXPECT_THAT(Find("missing/"), IsEmpty());
    ZVFileFinder finder;
    ZVFileInfo info;
    EXPECT_FALSE(finder.Find(ZVFilename(), ZVFind::FolderContent));
    ASSERT_TRUE(finder.Find(NameAt("a/b/")));
    std::filesystem::remove(At("a/b/file"));
    EXPECT_FALSE(finder.GetNext(info)) << "the only file has vanished after the listing";
    // A name that a text would not survive.
    Put("semicolon/film.mkv;1", "12345");
    ASSERT_TRUE(finder.Find(NameAt("semicolon/")));
    ASSERT_TRUE(finder.GetNext(info));
    EXPECT_EQ(info.GetFilename().GetFileSize(), 5);
    chmod(At("a").c_str(), 0);
    const auto listClosed = [&]
    {
        EXPECT_THAT(Find("a/"), IsEmpty());
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
        EXPECT_THAT(Find(folder), ElementsAre(folder + "file [1]"));
    }
    EXPECT_THAT(Find("a/file [1]"), ElementsAre("a/file [1]"));
    EXPECT_THAT(Find("?/f*"), IsEmpty()) << "nothing is a wild card without the tools library";
    FakeStringTools tools;
    g_pZVTools = &tools;
    EXPECT_THAT(Find("?/f*"), ElementsAre("?/file [1]"));
    EXPECT_THAT(Find("a/????\?[1]"), ElementsAre("a/file [1]"));
    EXPECT_THAT(Find("a/[f]*"), IsEmpty());
}

TEST_F(ZVFileSearchTest, FiltersAndFlagsDecideWhatIsFound)
{
    for (const char* name : {"a.vob", "ifo", "sub/b.Ifo", "sub/c.x.ifox", "VIDEO_TS.IFO"})
        Put(std::string("disc/") + name, name);
    chmod(At("disc/a.vob").c_str(), 0755);
    const ZVString folder = TextAt("disc");

    ZVFileSearch all(folder);
    EXPECT_THAT(Shorten(all.GetResults()), ElementsAre("disc/VIDEO_TS.IFO", "disc/a.vob", "disc/ifo"));
    ZVFileSearch some(folder, L"ifo", true);
    some.AddFilter(L"");
    some.AddFilter(L"VOB");
    EXPECT_THAT(Shorten(some.GetResults()), ElementsAre("disc/VIDEO_TS.IFO", "disc/a.vob", "disc/sub/b.Ifo"));
    EXPECT_EQ(some.GetTotalSize(), 12 + 5 + 9);
    ZVFileSearch others(folder, L"none", true);
    others.SetIncludeFolders(true);
    EXPECT_THAT(Shorten(others.GetResults()), ElementsAre("disc/sub/"));
    ZVFileSearch plain(folder, L"", true);
    plain.SetSkipMask(S_IXUSR);
    EXPECT_THAT(Shorten(plain.GetResults()), ElementsAre("disc/VIDEO_TS.IFO", "disc/ifo"));

    ZVStringArray out;
    ZVStringArray extensions;
    extensions.Add(L"ifo");
    EXPECT_EQ(ZVFileSystem::FindFiles(folder, out, false, extensions), 1);
    EXPECT_EQ(all.GetResults(out), 4) << "the paths are appended";
}

TEST_F(ZVFileSearchTest, AWalkSurvivesLoopsAndDepth)
{
    Put("a/b/file");
    Link("..", "a/b/loop");
    Link(".", "a/self");
    ZVFileSearch loops(TextAt("a"), L"", true);
    EXPECT_THAT(Shorten(loops.GetResults()), ElementsAre("a/b/file"));

    std::string deep = "d/file";
    while (deep.size() < 600)
        deep.insert(0, "d/");
    Put(deep);
    ZVStringArray out;
    EXPECT_EQ(ZVFileSystem::FindFiles(TextAt("d"), out, true, {}), 1);
}
}
