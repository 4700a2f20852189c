#include "mp4/AtomBytes.h"
#include "mp4/heif/IRefEntryAtom.h"
#include "mp4/heif/ItemPropAssocAtom.h"

#include <gmock/gmock.h>

namespace
{
using namespace AtomBytes;
using testing::ElementsAre;

// A file that is read whole and written as it was.
struct WholeTree : Tree
{
    explicit WholeTree(const Bytes& file) : Tree(file)
    {
        EXPECT_STREQ(Message, L"");
        EXPECT_EQ(Write(), file);
    }
};

// Forms that differ in the width or the presence of a field, and fields that are cut.
TEST(HEIFItemsTest, AtomsAreWrittenAsTheyWereRead)
{
    const Bytes nul = Zeros(1);
    const Bytes item = Number(0x102, 2) + Number(7, 2);
    const Bytes longItem = Number(0x10203, 4) + Number(7, 2);
    const Bytes infe = FullAtom("infe", item + nul);
    const Bytes extent = Number(3, 2) + Number(5, 2) + Number(6, 8) + Number(1, 2) + Number(8, 4) + Number(9, 8);
    const Bytes longEntry = Number(3, 4) + Number(0, 2) + Number(0, 2) + Number(1, 2) + Number(0x010203, 3);
    // clang-format off
    const struct
    {
        const char* Name;
        Bytes File;
    } rows[] = {
        {"pitm 0", FullAtom("pitm", Number(0xffff, 2))},
        {"pitm 2", FullAtom("pitm", Number(0x10000, 4), 2)},
        {"iinf 0 with fewer items", FullAtom("iinf", Number(3, 2) + infe + infe)},
        {"iinf 1 with fewer items", FullAtom("iinf", Number(3, 4) + infe + infe, 1)},
        {"infe 0", FullAtom("infe", item + "n" + nul + "image/x" + nul + "gzip" + nul)},
        {"infe 0 without an encoding", FullAtom("infe", item + nul + "image/x" + nul)},
        {"infe 1 with an open name", FullAtom("infe", item + "name", 1)},
        {"infe 2 of a picture", FullAtom("infe", item + "hvc1" + nul, 2, 1)},
        {"infe 2 of text", FullAtom("infe", item + "mime" + nul + "text/x" + nul, 2)},
        {"infe 3 with an open media type", FullAtom("infe", longItem + "mime" + nul + "text/x", 3)},
        {"infe 2 with a URI", FullAtom("infe", item + "uri n" + nul + "u:x" + nul, 2)},
        {"infe 3 without a name", FullAtom("infe", longItem + "hvc1", 3)},
        {"ipma 0", FullAtom("ipma", Number(2, 4) + Number(7, 2) + "\x02\x81\x7f" + Number(8, 2) + nul)},
        {"ipma 1 with long indexes", FullAtom("ipma", Number(1, 4) + Number(0x10000, 4) + "\x01\x80\x01", 1, 1)},
        {"types of references elsewhere", Atom("iprp", Atom("cdsc", "x")) + FullAtom("iref", Atom("free", "x"))},
        {"iloc 0", FullAtom("iloc", Number(0x4884, 2) + Number(1, 2) + extent)},
        {"iloc 1", FullAtom("iloc", Number(0x4884, 2) + Number(1, 2) + extent.substr(0, 2) + "\xff\xf1" + extent.substr(2), 1)},
        {"iloc 2 with an odd base offset", FullAtom("iloc", Number(0x3020, 2) + Number(1, 4) + longEntry, 2)},
        {"iloc 2 with an odd index", FullAtom("iloc", Number(0x3002, 2) + Number(1, 4) + longEntry + Zeros(2), 2)},
        {"iloc 0 cut in its count", FullAtom("iloc", "\x44\x44\xff")},
        {"iloc 2 cut in its count", FullAtom("iloc", "\x44\x44\xff\xff\xff", 2)},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const WholeTree tree(row.File);
    }
}

std::vector<uint32_t> GetReferences(const IRefEntryAtom& entry)
{
    std::vector<uint32_t> references;
    for (uint32_t index = 0; index < entry.GetToItemCount(); ++index)
        references.push_back(entry.GetToItemID(index));
    return references;
}

TEST(HEIFItemsTest, ReferencesHaveTheWidthOfTheirList)
{
    for (const auto& [version, width] : {std::pair(0, 2), std::pair(1, 4), std::pair(9, 4)})
        for (const char* const type : {"cdsc", "dimg", "thmb", "aux1", "auxl", "abcd"})
        {
            const Bytes entry = Number(9, width) + Number(2, 2) + Number(5, width) + Number(0xfffe, width);
            const WholeTree tree(FullAtom("iref", Atom(type, entry), version));
            const auto* const reference = tree.Find<IRefEntryAtom>({type});
            ASSERT_NE(reference, nullptr) << type;
            EXPECT_EQ(reference->GetFromItemID(), 9U);
            EXPECT_THAT(GetReferences(*reference), ElementsAre(5U, 0xfffeU));
        }
}

TEST(HEIFItemsTest, AReferenceEndsWhereNoNumberFits)
{
    const Bytes whole = Number(9, 4) + Number(2, 2) + Number(5, 4) + Number(6, 4);
    for (size_t size = 0; size < whole.size(); ++size)
    {
        const WholeTree tree(FullAtom("iref", Atom("dimg", whole.substr(0, size)), 1));
        const auto* const entry = tree.Find<IRefEntryAtom>({"dimg"});
        ASSERT_NE(entry, nullptr) << size;
        EXPECT_EQ(entry->GetFromItemID(), size < 4 ? 0U : 9U) << size;
        EXPECT_EQ(entry->GetToItemCount(), size < 10 ? 0U : 1U) << size;
    }
    EXPECT_STREQ(Tree(FullAtom("iref", Atom("dimg", whole + Zeros(4)), 1)).Message,
                 L"CAtom::Read Expected empty size 4, Pos 12, Size 22, dimg\n");
}

TEST(HEIFItemsTest, AssociationsEndWithTheirAtom)
{
    const Bytes entry = Number(7, 2) + "\x01\x01";
    const WholeTree tree(FullAtom("ipma", Number(UINT32_MAX, 4) + entry + entry) + Atom("free", Zeros(100)));
    EXPECT_EQ(tree.Find<ItemPropAssocAtom>()->GetEntryCount(), UINT32_MAX);
    EXPECT_EQ(tree.Find<ItemPropAssocAtom>()->GetEntries().size(), 2U);
    EXPECT_STREQ(Tree(FullAtom("ipma", Number(2, 4) + entry + Zeros(1)) + Atom("free", Zeros(8))).Message,
                 L"CAtom::Read Expected empty size -2, Pos 0, Size 23, ipma\n");
}
}
