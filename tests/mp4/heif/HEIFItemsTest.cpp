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
