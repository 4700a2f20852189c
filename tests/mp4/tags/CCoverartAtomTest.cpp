#include "mp4/tags/CCoverartAtom.h"

#include "TagBytes.h"
#include "support/MakeContent.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"

#include <thread>

#include <gtest/gtest.h>

using namespace AtomBytes;
namespace fs = std::filesystem;

class CCoverartAtomTest : public TagTest
{
protected:
    // The cover of a list, which keeps living.
    const CCoverartAtom& MakeCover(const Bytes& value, uint32_t dataType)
    {
        m_tree = std::make_unique<Tree>(Atom("ilst", Tag("covr", value, dataType)));
        return *m_tree->Find<CCoverartAtom>({"covr"});
    }

    static fs::path PathOf(const ZVFilename& filename) { return ZVNativePath(filename.GetFilename()).GetBytes(); }

private:
    std::unique_ptr<Tree> m_tree;
};

TEST_F(CCoverartAtomTest, LeavesNoFileAfterAFailure)
{
    ZVFilename none;
    EXPECT_FALSE(MakeCover("", 13).GetValue(none));
    EXPECT_TRUE(none.IsEmpty());
    ZVFilename unreachable = ZVFilename::FromPath(ZVNativePath::ToText((Folder / "none" / "cover.jpg").c_str()));
    EXPECT_FALSE(MakeCover("picture", 13).GetValue(unreachable));
    EXPECT_EQ(CountFiles(), 0);
}

// Such a picture stays in the film until it is written.
TEST_F(CCoverartAtomTest, WritesHugePicturesWhole)
{
    const std::string picture = MakeContent(CAtomBytes::MaximumInMemory + 12345);
    ZVFilename filename;
    ASSERT_TRUE(MakeCover(picture, 13).GetValue(filename));
    EXPECT_TRUE(ReadFile(PathOf(filename)) == picture);
}

TEST_F(CCoverartAtomTest, LeavesNoFileIfTheFilmIsCutMeanwhile)
{
    class CutFile : public MemoryFile
    {
    public:
        using MemoryFile::MemoryFile;
        int64_t Read(void* bytes, int64_t count) override { return IsCut ? 0 : MemoryFile::Read(bytes, count); }
        bool IsCut = false;
    };
    CutFile film(Atom("ilst", Tag("covr", Bytes(CAtomBytes::MaximumInMemory + 1, 'x'), 13)));
    CAtomReader reader(&film);
    const std::unique_ptr<CAtom> list = CAtom::Read(reader, nullptr, UINT64_MAX);
    film.IsCut = true;
    ZVFilename filename;
    const auto& cover = dynamic_cast<const CCoverartAtom&>(*dynamic_cast<CContainerAtom&>(*list).GetChildren()[0]);
    EXPECT_FALSE(cover.GetValue(filename));
    EXPECT_TRUE(filename.IsEmpty());
    EXPECT_EQ(CountFiles(), 0);
}

TEST_F(CCoverartAtomTest, NeverGivesTwoCoversTheSameFile)
{
    constexpr size_t Count = 16;
    std::vector<ZVFilename> names(Count);
    std::vector<std::unique_ptr<Tree>> trees;
    std::vector<std::thread> threads;
    for (size_t index = 0; index < Count; ++index)
        trees.push_back(std::make_unique<Tree>(Atom("ilst", Tag("covr", std::to_string(index), 13))));
    for (size_t index = 0; index < Count; ++index)
        threads.emplace_back([&, index] { trees[index]->Find<CCoverartAtom>({"covr"})->GetValue(names[index]); });
    for (std::thread& thread : threads)
        thread.join();
    for (size_t index = 0; index < Count; ++index)
        EXPECT_EQ(ReadFile(PathOf(names[index])), std::to_string(index));
    EXPECT_EQ(CountFiles(), Count);
}
