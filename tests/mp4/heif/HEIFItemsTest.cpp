#include "mp4/AtomBytes.h"
#include "mp4/heif/IDatAtom.h"
#include "mp4/heif/IInfAtom.h"
#include "mp4/heif/IRefAtom.h"
#include "mp4/heif/IRefEntryAtom.h"
#include "mp4/heif/InfeAtom.h"
#include "mp4/heif/ItemPropAssocAtom.h"
#include "mp4/heif/PrimaryItemAtom.h"

#include <gmock/gmock.h>

namespace
{
using namespace AtomBytes;
using testing::ElementsAre;
using testing::IsEmpty;

// A file that is read whole and written as it was.
struct WholeTree : Tree
{
    explicit WholeTree(const Bytes& file) : Tree(file)
    {
        EXPECT_STREQ(Message, L"");
        EXPECT_EQ(Write(), file);
    }
};

TEST(HEIFItemsTest, ThePrimaryItemHas16BitsInVersion0)
{
    for (const auto& [version, width] : {std::pair(0, 2), std::pair(1, 4), std::pair(2, 4)})
    {
        const Tree tree(FullAtom("pitm", Number(0xffff, width), version));
        ASSERT_NE(tree.Find<PrimaryItemAtom>(), nullptr) << version;
        EXPECT_EQ(tree.Find<PrimaryItemAtom>()->GetItemID(), 0xffffU) << version;
    }
    EXPECT_STREQ(Tree(FullAtom("pitm", Zeros(4), 0)).Message, L"CAtom::Read Expected empty size 2, Pos 0, Size 14, pitm\n");
}

TEST(HEIFItemsTest, TheListOfItemsHasAsManyAsFit)
{
    const Bytes item = FullAtom("infe", Zeros(5));
    for (const auto& [version, width] : {std::pair(0, 2), std::pair(1, 4)})
    {
        const Bytes file = FullAtom("iinf", Number(3, width) + item + item, version);
        const Tree tree(file);
        ASSERT_NE(tree.Find<IInfAtom>(), nullptr) << version;
        EXPECT_EQ(tree.Find<IInfAtom>()->GetEntryCount(), 3U) << version;
        EXPECT_EQ(tree.Find<IInfAtom>()->GetChildren().GetCount(), 2) << version;
        EXPECT_EQ(tree.Write(), file);
    }
}

const Bytes Nul = Zeros(1);
const Bytes XMP = "application/rdf+xml";

struct Item
{
    const char* Name;
    int Version;
    Bytes Body;
    uint32_t ID;
    const char* Type;  // or empty
    Bytes ItemName;
    Bytes ContentType;
    Bytes Encoding;
    Bytes URI;
    bool IsExif;
    bool IsXMP;
};

class InfeTest : public testing::TestWithParam<Item>
{
};

TEST_P(InfeTest, HasTheFieldsOfItsVersion)
{
    const Item& row = GetParam();
    const Bytes file = FullAtom("infe", row.Body, row.Version);
    const Tree tree(file);
    EXPECT_STREQ(tree.Message, L"");
    EXPECT_EQ(tree.Write(), file);
    const auto* const item = tree.Find<InfeAtom>();
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetItemID(), row.ID);
    EXPECT_EQ(item->GetProtectionIndex(), 7);
    EXPECT_STREQ(item->GetItemType() == 0 ? ZVString() : GetTypeText(item->GetItemType()), ZVString::FromUTF8(row.Type));
    EXPECT_EQ(item->GetItemName().Text(), row.ItemName);
    EXPECT_EQ(item->GetContentType().Text(), row.ContentType);
    EXPECT_EQ(item->GetContentEncoding().Text(), row.Encoding);
    EXPECT_EQ(item->GetItemURI().Text(), row.URI);
    EXPECT_EQ(item->IsExif(), row.IsExif);
    EXPECT_EQ(item->IsXMP(), row.IsXMP);
}

const Bytes Short = Number(0x102, 2) + Number(7, 2);
const Bytes Long = Number(0x10203, 4) + Number(7, 2);

// clang-format off
const Item Items[] = {
    {"Version0", 0, Short + "n" + Nul + "image/x" + Nul + "gzip" + Nul, 0x102, "", "n" + Nul, "image/x" + Nul, "gzip" + Nul, "", false, false},
    {"NoEncoding", 0, Short + Nul + XMP + Nul, 0x102, "", Nul, XMP + Nul, "", "", false, false},
    {"Version1", 1, Short + "name", 0x102, "", "name", "", "", "", false, false},
    {"Exif", 2, Short + "Exif" + Nul, 0x102, "Exif", Nul, "", "", "", true, false},
    {"XMP", 2, Short + "mime" + Nul + XMP + Nul, 0x102, "mime", Nul, XMP + Nul, "", "", false, true},
    {"XMPToTheEnd", 3, Long + "mime" + Nul + XMP, 0x10203, "mime", Nul, XMP, "", "", false, true},
    {"LongerThanXMP", 2, Short + "mime" + Nul + XMP + "2" + Nul, 0x102, "mime", Nul, XMP + "2" + Nul, "", "", false, false},
    {"URI", 2, Short + "uri n" + Nul + "u:x" + Nul, 0x102, "uri ", "n" + Nul, "", "", "u:x" + Nul, false, false},
    {"NoName", 3, Long + "hvc1", 0x10203, "hvc1", "", "", "", "", false, false},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, InfeTest, testing::ValuesIn(Items), [](const auto& row) { return row.param.Name; });

TEST(HEIFItemsTest, AnItemIsHiddenByItsFlag)
{
    EXPECT_TRUE(WholeTree(FullAtom("infe", Zeros(9), 2, 3)).Find<InfeAtom>()->IsHidden());
    EXPECT_FALSE(WholeTree(FullAtom("infe", Zeros(9), 2, 2)).Find<InfeAtom>()->IsHidden());
    EXPECT_STREQ(Tree(FullAtom("infe", Short + "hvc1" + Nul + "more", 2)).Message,
                 L"CAtom::Read Expected empty size 4, Pos 0, Size 21, infe\n");
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

TEST(HEIFItemsTest, TypesOfReferencesAreOthersElsewhere)
{
    const Tree tree(Atom("iprp", Atom("cdsc", "x")) + FullAtom("iref", Atom("free", "x")));
    EXPECT_STREQ(tree.Message, L"");
    ASSERT_NE(tree.Find({"cdsc"}), nullptr);
    EXPECT_TRUE(tree.Find({"cdsc"})->IsOpaque());
    EXPECT_STREQ(Tree(FullAtom("iref", Atom("hint", Zeros(5)))).Message,
                 L"CAtom::Read Expected empty size 1, Pos 12, Size 12, hint\n");
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

TEST(HEIFItemsTest, AssociationsHaveOneByteOrTwo)
{
    const Bytes small = Number(2, 4) + Number(7, 2) + "\x02\x81\x7f" + Number(8, 2) + Zeros(1);
    const Bytes large = Number(1, 4) + Number(0x10000, 4) + "\x02\x80\x01" + "\x7f\xff";
    const WholeTree narrow(FullAtom("ipma", small));
    const auto& entries = narrow.Find<ItemPropAssocAtom>()->GetEntries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].ItemID, 7U);
    ASSERT_EQ(entries[0].Associations.size(), 2U);
    EXPECT_TRUE(entries[0].Associations[0].IsEssential);
    EXPECT_EQ(entries[0].Associations[0].PropertyIndex, 1);
    EXPECT_FALSE(entries[0].Associations[1].IsEssential);
    EXPECT_EQ(entries[0].Associations[1].PropertyIndex, 0x7f);
    EXPECT_THAT(entries[1].Associations, IsEmpty());

    const WholeTree wide(FullAtom("ipma", large, 1, 1));
    const IPMAEntry& entry = wide.Find<ItemPropAssocAtom>()->GetEntries().at(0);
    EXPECT_EQ(entry.ItemID, 0x10000U);
    ASSERT_EQ(entry.Associations.size(), 2U);
    EXPECT_TRUE(entry.Associations[0].IsEssential);
    EXPECT_EQ(entry.Associations[0].PropertyIndex, 1);
    EXPECT_FALSE(entry.Associations[1].IsEssential);
    EXPECT_EQ(entry.Associations[1].PropertyIndex, 0x7fff);
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

TEST(HEIFItemsTest, ItemDataIsReadFromInsideTheAtomOnly)
{
    WholeTree whole(Atom("idat", "0123456789") + Atom("free"));
    Tree cut(Number(8 + 20, 4) + "idat" + "0123456789");
    EXPECT_STREQ(cut.Message, L"");
    EXPECT_EQ(cut.Find<IDatAtom>()->GetDataSize(), 20U);
    struct Range
    {
        uint64_t Offset;
        uint64_t Size;
        bool IsInside;
    };
    for (const auto& [offset, size, isInside] : {
             Range {0,          10,         true },
              Range {9,          1,          true },
              Range {10,         0,          true },
              Range {10,         1,          false},
              Range {11,         0,          false},
             Range {1,          UINT64_MAX, false},
              Range {UINT64_MAX, 2,          false}
    })
        for (Tree* const tree : {static_cast<Tree*>(&whole), &cut})
        {
            std::vector<uint8_t> bytes = {'o', 'l', 'd'};
            EXPECT_EQ(tree->Find<IDatAtom>()->ReadData(tree->Reader, offset, size, bytes), isInside) << offset;
            EXPECT_EQ(Bytes(bytes.begin(), bytes.end()), isInside ? Bytes("0123456789").substr(offset, size) : "") << offset;
        }
}
}
