#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "mp4/AtomBytes.h"

#include <gmock/gmock.h>

namespace
{
using namespace AtomBytes;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

Bytes Header(uint32_t size, const Bytes& type = "free")
{
    return Number(size, 4) + type;
}

Bytes LargeHeader(uint64_t size, const Bytes& type = "free")
{
    return Header(1, type) + Number(size, 8);
}

struct EndOfReading
{
    const char* Name;
    Bytes File;
    size_t Roots;
    const wchar_t* Message;
    int64_t Position;  // where the reader is then, past what the log shows
};

class AtomHeaderTest : public testing::TestWithParam<EndOfReading>
{
};

TEST_P(AtomHeaderTest, EndsTheReading)
{
    const Tree tree(GetParam().File);
    EXPECT_EQ(tree.Roots.size(), GetParam().Roots);
    EXPECT_STREQ(tree.Message, GetParam().Message);
    EXPECT_EQ(tree.Reader.GetPosition(), GetParam().Position);
}

// clang-format off
const EndOfReading EndsOfReading[] = {
    {"NoBytes", "", 0, L"", 0},
    {"CutInTheSize", Atom("free") + Zeros(3), 1, L"Read past EOF", 8},
    {"CutInTheType", Atom("free") + Zeros(7), 1, L"Read past EOF", 12},
    {"Size0", Atom("free") + Header(0), 1, L"", 8},
    {"Size7", Atom("free") + Header(7), 1, L"", 8},
    {"Size8", Atom("free") + Header(8), 2, L"", 16},
    {"BodyCut", Header(10) + "x", 0, L"Read past EOF", 8},
    {"LargeSizeCut", Header(1) + Zeros(7), 0, L"Read past EOF", 8},
    {"LargeSize16", LargeHeader(16), 1, L"", 16},
    {"LargeSize15", LargeHeader(15), 0, L"CAtom::Read Expected empty size -1, Pos 0, Size 16, free\n", 16},
    {"LargestPositiveBody", LargeHeader((uint64_t {1} << 63) + 15), 0, L"Read past EOF", 16},
    {"MostNegativeBody", LargeHeader((uint64_t {1} << 63) + 16, "ftyp") + "isom" + Zeros(4), 0,
     L"CAtom::Read Expected empty size -9223372036854775808, Pos 0, Size 16, ftyp\n", 24},
    {"BodyTooLong", Atom("hint", Zeros(6)), 0, L"CAtom::Read Expected empty size 2, Pos 0, Size 12, hint\n", 14},
    {"BodyTooShort", FullAtom("smhd", Zeros(2)) + Atom("free"), 0,
     L"CAtom::Read Expected empty size -2, Pos 0, Size 16, smhd\n", 22},
    {"StrayBytesInAList", Atom("moov", Atom("free") + Zeros(7)), 0,
     L"CAtom::Read Expected empty size 7, Pos 0, Size 16, moov\n", 23},
    {"TypeWithZeros", Atom("iref", Zeros(4) + Atom(Bytes("\0\0\0i", 4), Zeros(6) + "1234")), 0,
     L"CAtom::Read Expected empty size 6, Pos 12, Size 12, i\n", 30},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, AtomHeaderTest, testing::ValuesIn(EndsOfReading), [](const auto& row) { return row.param.Name; });

TEST(CAtomReadTest, ALeafThatIsNotReadWholeShowsWhatFollowsInTheLog)
{
    FakeTools tools;
    g_pZVTools = &tools;
    const Tree few(Atom("hint", Zeros(4) + "a") + "~\x7f\x1f");
    const std::vector<std::string> lines = tools.Manager.Lines;
    tools.Manager.Lines.clear();
    const Tree many(Atom("hint", Zeros(4) + Bytes(3, 'x')) + Bytes(40, ' '));
    g_pZVTools = nullptr;
    EXPECT_THAT(lines, ElementsAre(HasSubstr("|CAtom::Read|CAtom::Read Expected empty size 1, Pos 0, Size 12, hint"),
                                   EndsWith("|CAtom::Read|61 a"), EndsWith("|7e ~"), EndsWith("|7f"), EndsWith("|1f")));
    EXPECT_THAT(tools.Manager.Lines, SizeIs(1 + 24));
}

// What ends a list of children is not lost.
TEST(CAtomReadTest, BytesThatAreNoAtomEndAListAndAreWrittenBack)
{
    const Bytes strays[] = {Header(0), Header(7) + "more", Header(200) + Zeros(50), Header(1) + Zeros(7)};
    for (const Bytes& stray : strays)
    {
        const Bytes file = Atom("moov", Atom("free", "1") + Atom("udta", stray) + stray) + Atom("free", "2");
        const Tree tree(file);
        EXPECT_STREQ(tree.Message, L"");
        EXPECT_THAT(tree.Roots, SizeIs(2));
        ASSERT_NE(tree.Find<CContainerAtom>(), nullptr);
        EXPECT_EQ(tree.Find<CContainerAtom>()->GetChildren().GetCount(), 2);
        EXPECT_EQ(tree.Find<CContainerAtom>()->GetSize(), 8 + 9 + 8 + 2 * stray.size());
        EXPECT_EQ(tree.Write(), file);
    }
}

TEST(CAtomReadTest, AListThatIsCutBetweenChildrenKeepsThem)
{
    const Bytes track = Number(500, 4) + "trak" + FullAtom("smhd", Zeros(4));
    const Tree tree(Number(1000, 4) + "moov" + Atom("free") + track);
    EXPECT_STREQ(tree.Message, L"");
    ASSERT_NE(tree.Find({"trak", "smhd"}), nullptr);
    EXPECT_EQ(tree.Find()->GetSize(), 1000U);
    EXPECT_EQ(tree.Write(), Atom("moov", Atom("free") + Atom("trak", FullAtom("smhd", Zeros(4)))));
}

struct MetaForm
{
    const char* Name;
    Bytes File;
    const char* Class;
};

class MetaTest : public testing::TestWithParam<MetaForm>
{
};

TEST_P(MetaTest, IsToldByWhatIsInIt)
{
    const Bytes file = GetParam().File + Atom("free");
    const Tree tree(file);
    ASSERT_THAT(tree.Roots, SizeIs(2));
    EXPECT_STREQ(tree.Roots[0]->GetClass().Name, GetParam().Class);
    EXPECT_EQ(tree.Roots[0]->IsOpaque(), std::string_view(GetParam().Class) == "CFREEAtom");
    EXPECT_EQ(tree.Roots[0]->GetTypeName(), L"meta");
    EXPECT_EQ(tree.Roots[0]->GetSize(), GetParam().File.size());
    EXPECT_EQ(tree.Write(), file);
}

const Bytes Handler = FullAtom("hdlr", Zeros(20));
// clang-format off
const MetaForm MetaForms[] = {
    {"Full", FullAtom("meta", Handler), "CMetaAtom"},
    {"FullWithHandlerLast", FullAtom("meta", Atom("ilst") + Handler), "CMetaAtom"},
    {"Plain", Atom("meta", Handler), "QTMetaAtom"},
    {"PlainWithKeysFirst", Atom("meta", Atom("keys", Zeros(8)) + Handler), "QTMetaAtom"},
    {"PlainWithAnotherFirst", Atom("meta", Atom("free") + Handler), "QTMetaAtom"},
    {"PlainWithEmptyHandler", Atom("meta", Atom("hdlr")), "QTMetaAtom"},
    {"OnlyFree", FullAtom("meta", Atom("free")), "CFREEAtom"},
    {"NoHandler", Atom("meta", Atom("ilst")), "CFREEAtom"},
    {"Empty", Atom("meta"), "CFREEAtom"},
    {"ThreeBytes", Atom("meta", "abc"), "CFREEAtom"},
    {"HandlerTooDeep", FullAtom("meta", Atom("udta", Handler)), "CFREEAtom"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, MetaTest, testing::ValuesIn(MetaForms), [](const auto& row) { return row.param.Name; });

// Only a try that ends without a handler is undone.
TEST(CAtomReadTest, WhatFailsInsideMetaIsNotTriedAnotherWay)
{
    EXPECT_STREQ(Tree(FullAtom("meta", Handler + Atom("uuid", "short"))).Message, L"uuid atom must have larger size");
    EXPECT_STREQ(Tree(FullAtom("meta", Atom("uuid", "short") + Handler)).Message, L"uuid atom must have larger size");
    // Its first eight bytes are looked at wherever it ends.
    EXPECT_STREQ(Tree(Atom("meta", Zeros(4))).Message, L"Read past EOF");
}
}
