#include "system/file/ZVFileSearch.h"

#include "FileFixture.h"
#include "system/file/ZVFileFinder.h"
#include "system/file/ZVFileSystem.h"

namespace
{
// Says that every text with "*" or "?" has wild cards.
class WildcardTools final : public FakeTools, public IZVStringTools
{
public:
    IZVStringTools* GetTools(bool) override { return this; }
    int32_t Find(const wchar_t*, const wchar_t*, int32_t) override { return -1; }
    int32_t Compare(const wchar_t*, const wchar_t*, int32_t, bool, int32_t) override { return 0; }
    bool MatchesWildcards(const wchar_t*, const wchar_t*) override { return false; }
    bool HasWildcards(const wchar_t* text) override { return wcspbrk(text, L"*?") != nullptr; }
};

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
        EXPECT_TRUE(finder.Find(TextAt(pattern), listFolder));
        ZVStringArray paths;
        for (ZVFileInfo info; finder.GetNext(info);)
            paths.Add(info.GetPath());
        return Shorten(paths);
    }
};

TEST_F(ZVFileSearchTest, AFolderIsListedWithoutHiddenNames)
{
    for (const char* name : {"a/b/file", "a/.hidden", "a/c"})
        Put(name);
    EXPECT_EQ(Find("a/"), "a/b/ a/c ");
    EXPECT_EQ(Find("a", true), "a/b/ a/c ");
    EXPECT_EQ(Find("a"), "a/ ");
    EXPECT_EQ(Find("missing/") + Find("a/c/"), "");
    EXPECT_FALSE(ZVFileFinder().Find(L"", true));
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
    for (const char* folder : {"a", "[a]", "?", "*", "a\\b", "a;b"})
        Put(std::string(folder) + "/file [1]");
    for (const char* folder : {"[a]/", "?/", "*/", "a\\b/", "a;b/"})
        EXPECT_EQ(Find(folder), std::string(folder) + "file [1] ");
    // Without the tools library nothing is a wild card.
    EXPECT_EQ(Find("?/f*"), "");
    EXPECT_EQ(Find("a/file [1]"), "a/file [1] ");
    WildcardTools tools;
    g_pZVTools = &tools;
    EXPECT_EQ(Find("?/f*"), "?/file [1] ");
    EXPECT_EQ(Find("[a]/*[1]"), "[a]/file [1] ");
    EXPECT_EQ(Find("a/????\?[1]"), "a/file [1] ");
    EXPECT_EQ(Find("a/[f]*"), "");
}

TEST_F(ZVFileSearchTest, EntriesAreDescribed)
{
    Put("a/b.d/film.x.mkv", "1234");
    Link("nothing", "a/c");
    ZVFileFinder finder;
    ZVFileInfo info;
    EXPECT_TRUE(finder.Find(TextAt("a/")) && finder.GetNext(info) && info.IsDirectory() && info.GetName() == L"b.d");
    EXPECT_TRUE(finder.GetNext(info) && S_ISLNK(info.GetMode()) && !finder.GetNext(info));
    EXPECT_TRUE(info.Load(TextAt("a/b.d/film.x.mkv")) && info.GetName() == L"film.x.mkv" && info.GetSize() == 4);
    // What vanishes after the listing is left out.
    ASSERT_TRUE(finder.Find(TextAt("a/")));
    std::filesystem::remove_all(At("a"));
    EXPECT_FALSE(finder.GetNext(info) || info.IsFound() || info.IsDirectory());
}

TEST_F(ZVFileSearchTest, FiltersAndFlagsDecideWhatIsFound)
{
    for (const char* name : {"a.vob", "ifo", "sub/b.Ifo", "sub/c.x.ifox", "VIDEO_TS.IFO"})
        Put(std::string("disc/") + name, name);
    chmod(At("disc/a.vob").c_str(), 0755);
    const ZVString folder = TextAt("disc");

    ZVFileSearch all(folder);
    EXPECT_EQ(Shorten(all.GetResults()), "disc/VIDEO_TS.IFO disc/a.vob disc/ifo ");
    EXPECT_EQ(all.GetTotalSize(), 12 + 5 + 3);
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
    EXPECT_EQ(all.GetResults(out), 4);
    for (const wchar_t* nowhere : {L"E:\\Source\\Media\\", L""})
        EXPECT_EQ(ZVFileSystem::FindFiles(nowhere, out, true, {}), 0);
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
