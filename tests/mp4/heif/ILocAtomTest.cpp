#include "mp4/heif/ILocAtom.h"

#include "mp4/AtomBytes.h"
#include "mp4/movie/CMDATAtom.h"

#include <gtest/gtest.h>

namespace
{
using namespace AtomBytes;

// Four sizes, a digit each: of offset, length, base offset and index.
Bytes ILoc(int version, uint32_t sizes, uint32_t count, const Bytes& items)
{
    return FullAtom("iloc", Number(sizes, 2) + Number(count, version < 2 ? 2 : 4) + items, version);
}

const std::vector<ILocEntry>* FindEntries(const Tree& tree)
{
    const auto* const atom = tree.Find<ILocAtom>();
    return atom == nullptr ? nullptr : &atom->GetEntries();
}

Bytes MakeItems(int count, uint16_t extents)
{
    Bytes items;
    const Bytes item = Number(1, 2) + Number(0, 2) + Number(extents, 2);
    for (int index = 0; index < count; ++index)
        items += item + Bytes(extents * size_t {2}, '\1');
    return items;
}

TEST(ILocAtomTest, LimitsItemsAndExtents)
{
    const Tree most(ILoc(0, 0x1100, 20'000, MakeItems(20'000, 32)));
    EXPECT_STREQ(most.Message, L"");
    ASSERT_NE(FindEntries(most), nullptr);
    EXPECT_EQ(FindEntries(most)->size(), 20'000U);
    EXPECT_EQ(FindEntries(most)->back().Extents.size(), 32U);
    // The count alone is enough.
    for (const int version : {0, 2})
        EXPECT_STREQ(Tree(ILoc(version, 0x1100, 20'001, "")).Message, L"ILocAtom::ILocAtom too many iloc item entries");
    EXPECT_STREQ(Tree(ILoc(0, 0x1100, 1, MakeItems(1, 33))).Message, L"ILocAtom::ILocAtom too many extents per entry");
}

TEST(ILocAtomTest, EndsBeforeAnItemThatDoesNotFit)
{
    struct Minimum
    {
        int Version;
        size_t Bytes;
    };
    for (const auto& [version, bytes] : {
             Minimum {0, 4 + 6 },
              Minimum {1, 4 + 8 },
              Minimum {2, 4 + 10}
    })
        for (const size_t present : {2 * bytes - 1, 2 * bytes})
        {
            const Bytes file = ILoc(version, 0x4440, 3, Zeros(present)) + Atom("free");
            const Tree tree(file);
            EXPECT_STREQ(tree.Message, L"") << version;
            EXPECT_EQ(tree.Write(), file) << version;
            ASSERT_NE(FindEntries(tree), nullptr);
            EXPECT_EQ(FindEntries(tree)->size(), present / bytes) << version;
            EXPECT_EQ(tree.Find<ILocAtom>()->GetItemCount(), 3U) << version;
        }
}

// Entries take more memory than bytes in the file, so many lists have a bound together.
TEST(ILocAtomTest, TheListsOfAFileShareABound)
{
    const Bytes full = ILoc(0, 0, 20'000, MakeItems(20'000, 0));
    Bytes file;
    for (int32_t count = 0; count <= CAtomLimits::MaximumEntries / 20'000; ++count)
        file += full;
    const Tree tree(file);
    EXPECT_STREQ(tree.Message, L"");
    ASSERT_GE(tree.Roots.size(), 2U);
    const auto& last = dynamic_cast<const ILocAtom&>(*tree.Roots.back());
    const auto& before = dynamic_cast<const ILocAtom&>(**(tree.Roots.end() - 2));
    EXPECT_EQ(before.GetEntries().size(), 20'000U);
    EXPECT_TRUE(last.GetEntries().empty());
    EXPECT_TRUE(tree.Write() == file);
}

// The offsets count from the base of their item, and from the start of the data when they are relative. Items that lie elsewhere
// stay.
TEST(ILocAtomTest, MovesTheItemsOfTheFile)
{
    const auto item = [](int method, uint64_t base, uint64_t offset)
    {
        return Number(1, 2) + Number(static_cast<uint64_t>(method), 2) + Zeros(2) + Number(base, 4) + Number(1, 2) +
               Number(offset, 4) + Number(5, 4);
    };
    const Tree media(Atom("mdat", Zeros(50)));
    const Tree tree(ILoc(1, 0x4440, 3, item(0, 0, 20) + item(0, 6, 6) + item(1, 0, 30)));
    auto& places = *tree.Find<ILocAtom>();
    auto& mdat = *media.Find<CMDATAtom>();
    const auto getOffsets = [&places]
    {
        std::vector<uint64_t> offsets;
        for (const ILocEntry& entry : places.GetEntries())
            offsets.push_back(entry.Extents.front().Offset);
        return offsets;
    };
    const auto getMessage = [&places](void (CAtom::*convert)()) { return GetMessage([&] { (places.*convert)(); }); };
    EXPECT_EQ(getMessage(&CAtom::ConvertToRelative), L"ILocAtom::ConvertToRelative: An MDAT atom has not been associated");
    EXPECT_EQ(getMessage(&CAtom::ConvertToAbsolute), L"ILocAtom::ConvertToAbsolute: An MDAT atom has not been associated");
    places.SetMDAT(&mdat);
    mdat.SetWrittenStart(13);
    EXPECT_EQ(getMessage(&CAtom::ConvertToRelative), L"offset for an entry is invalid");
    EXPECT_EQ(getOffsets(), (std::vector<uint64_t> {20, 6, 30}));
    mdat.ForgetWrittenStart();
    EXPECT_EQ(getMessage(&CAtom::ConvertToRelative), L"");
    EXPECT_EQ(getOffsets(), (std::vector<uint64_t> {12, 4, 30}));
    mdat.SetWrittenStart(108);
    EXPECT_EQ(getMessage(&CAtom::ConvertToAbsolute), L"");
    EXPECT_EQ(getOffsets(), (std::vector<uint64_t> {120, 106, 30}));
}
}
