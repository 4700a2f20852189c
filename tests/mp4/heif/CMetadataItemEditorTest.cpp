#include "mp4/heif/CMetadataItemEditor.h"

#include "mp4/AtomBytes.h"
#include "mp4/heif/IDatAtom.h"
#include "mp4/heif/IInfAtom.h"
#include "mp4/heif/ILocAtom.h"
#include "mp4/heif/IRefEntryAtom.h"
#include "mp4/heif/InfeAtom.h"
#include "mp4/model/EncodeText.h"

#include <gmock/gmock.h>
#include <numeric>

namespace
{
using namespace AtomBytes;
using testing::ElementsAre;

Bytes Item(uint64_t id, const Bytes& type, uint64_t protection = 0)
{
    return FullAtom("infe", Number(id, 2) + Number(protection, 2) + type + Zeros(1), 2);
}

Bytes List(const std::vector<Bytes>& items)
{
    return FullAtom("iinf", Number(items.size(), 2) + std::accumulate(items.begin(), items.end(), Bytes()));
}

struct Place
{
    uint64_t ID;
    uint64_t Method;
    uint64_t Base;
    std::vector<std::pair<uint64_t, uint64_t>> Extents;  // offset and length
};

// With 32 bits for offset, length and base offset.
Bytes Places(const std::vector<Place>& places)
{
    Bytes items;
    for (const Place& place : places)
    {
        items +=
            Number(place.ID, 2) + Number(place.Method, 2) + Zeros(2) + Number(place.Base, 4) + Number(place.Extents.size(), 2);
        for (const auto& [offset, length] : place.Extents)
            items += Number(offset, 4) + Number(length, 4);
    }
    return FullAtom("iloc", Number(0x4440, 2) + Number(places.size(), 2) + items, 1);
}

Bytes Describes(uint64_t from, uint64_t to)
{
    return Atom("cdsc", Number(from, 2) + Number(1, 2) + Number(to, 2));
}

// The atoms of a picture that is item 1.
struct Picture
{
    Bytes Primary = FullAtom("pitm", Number(1, 2));
    Bytes Items = List({Item(1, "av01")});
    Bytes Where = Places({
        {1, 0, 0, {{20, 5}}}
    });
    Bytes Data = {};
    Bytes More = {};

    Bytes Make() const
    {
        const Bytes handler = FullAtom("hdlr", Zeros(4) + "pict" + Zeros(13));
        return FullAtom("meta", handler + Primary + Items + Where + Data + More);
    }
};

// The meta atom after a change, as bytes that are read again, or why it was refused.
struct Edited
{
    Edited(const Bytes& meta, MetadataItemKind kind, const Bytes& bytes) : Before(meta)
    {
        try
        {
            CMetadataItemEditor editor(Before.Reader, *Before.Find<CContainerAtom>());
            editor.Set(kind, AsBytes(bytes));
            const std::unique_ptr<CAtom> edited = editor.TakeMeta();
            After = std::make_unique<Tree>(WriteAll(std::vector {edited.get()}));
            EXPECT_EQ(After->Message, L"");
        }
        catch (Exception* exception)
        {
            const std::unique_ptr<Exception> owner(exception);
            Error = owner->Message;
        }
    }

    template <class Atom = CContainerAtom>
    Atom* Find(const std::vector<const char*>& path) const
    {
        return After == nullptr ? nullptr : After->Find<Atom>(path);
    }

    // What an item in idat holds.
    Bytes GetItem(uint32_t id) const
    {
        Bytes item;
        for (const ILocEntry& entry : Find<ILocAtom>({"iloc"})->GetEntries())
            for (const ILocExtent& extent : entry.Extents)
                if (entry.ItemID == id && entry.GetConstructionMethod() == ILocEntry::InItemData)
                {
                    std::vector<uint8_t> part;
                    EXPECT_TRUE(
                        Find<IDatAtom>({"idat"})->ReadData(After->Reader, entry.BaseOffset + extent.Offset, extent.Length, part));
                    item.append(part.begin(), part.end());
                }
        return item;
    }

    std::vector<uint32_t> GetIDs() const
    {
        std::vector<uint32_t> ids;
        for (const CAtom* const item : Find<>({"iinf"})->GetChildren())
            ids.push_back(static_cast<const InfeAtom*>(item)->GetItemID());
        return ids;
    }

    Tree Before;
    std::unique_ptr<Tree> After;
    ZVString Error;
};

struct LayoutRow
{
    const char* Name;
    std::vector<Place> Places;
    Bytes Data;
    std::vector<Bytes> Items;  // of the numbers from 2 on
};

class ItemLayoutTest : public testing::TestWithParam<LayoutRow>
{
};

TEST_P(ItemLayoutTest, KeepsWhatItemsHold)
{
    const LayoutRow& row = GetParam();
    const Picture picture {.Where = Places(row.Places), .Data = Atom("idat", "..abcdef..ghij")};
    const Edited edited(picture.Make(), MetadataItemKind::XMP, "XMP");
    ASSERT_EQ(edited.Error, L"");
    // The header takes eight bytes.
    EXPECT_EQ(WriteAll(std::vector {edited.Find<CAtom>({"idat"})}).substr(8), row.Data);
    for (size_t index = 0; index < row.Items.size(); ++index)
        EXPECT_EQ(edited.GetItem(static_cast<uint32_t>(index + 2)), row.Items[index]) << index;
    EXPECT_EQ(edited.GetItem(static_cast<uint32_t>(row.Items.size() + 2)), "XMP");
}

// clang-format off
const LayoutRow LayoutRows[] = {
    {"Gaps", {{2, 1, 0, {{10, 4}}}, {3, 1, 0, {{2, 6}}}}, "abcdefghijXMP", {"ghij", "abcdef"}},
    {"Base", {{2, 1, 8, {{2, 4}}}, {3, 1, 2, {{0, 6}}}}, "abcdefghijXMP", {"ghij", "abcdef"}},
    {"Pieces", {{2, 1, 0, {{12, 2}, {2, 1}}}}, "aijXMP", {"ija"}},
    {"Shared", {{2, 1, 0, {{2, 6}}}, {3, 1, 0, {{2, 6}}}}, "abcdefXMP", {"abcdef", "abcdef"}},
    {"Overlap", {{2, 1, 0, {{4, 6}}}, {3, 1, 0, {{2, 4}}}, {4, 1, 0, {{3, 1}}}}, "abcdef..XMP", {"cdef..", "abcd", "b"}},
    {"Open", {{2, 1, 0, {{10, 0}}}}, "ghijXMP", {"ghij"}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Items, ItemLayoutTest, testing::ValuesIn(LayoutRows), [](const auto& row) { return row.param.Name; });

TEST(CMetadataItemEditorTest, RefusesWhatCouldHarmOtherItems)
{
    struct Row
    {
        Picture Before;
        const wchar_t* Error;
    };
    const Bytes large = Atom("idat", Zeros(40 << 20));
    for (const Row& row : {
             Row {{.Primary = ""},                                                                     L"The metadata cannot be related to the primary picture"},
             Row {{.Items = ""},                                                                       L"meta atom has wrong number of iinf atoms"             },
             Row {{.Items = FullAtom("iinf", Number(2, 2) + Item(1, "av01"))},                         L"The list of the file's items is not understood"       },
             Row {{.Items = List({Item(1, "av01"), Item(1, "Exif")})},                                 L"Item 1 stands in the list of items more than once"    },
             Row {{.Items = List({Item(5, "Exif", 1)})},                                               L"Item 5 is encrypted"                                  },
             Row {{.Where = Places({{1, 0, 0, {{1000, 5}}}})},                                         L"Item 1 lies outside the file"                         },
             Row {{.Where = Places({{1, 0, 0, {{UINT32_MAX, 5}}}})},                                   L"Item 1 lies outside the file"                         },
             Row {{.Where = Places({{1, 1, 0, {{0, 1}}}})},                                            L"Item 1 lies outside the bytes of idat"                },
             Row {{.Where = Places({{1, 2, 0, {{0, 1}}}})},                                            L"Item 1 lies in a way that cannot be followed"         },
             Row {{.Where = Places({{1, 1, 0, {{0, 1}, {0, 0}}}})},                                    L"Item 1 has several extents, and one without a length" },
             Row {{.Where = Places({{1, 1, 0, {{0, 0}}}, {2, 1, 0, {{0, 0}}}}), .Data = large},
                  L"The items in idat hold more than 64 MiB"                                                                                                   },
             Row {{.Items = List({Item(5, "Exif")}), .Where = Places({{5, 0, 0, {}}, {5, 0, 0, {}}})},
                  L"Item 5 lies in more than one place"                                                                                                        },
    })
        EXPECT_EQ(Edited(row.Before.Make(), MetadataItemKind::Exif, "II*" + Zeros(1)).Error, row.Error);
    EXPECT_EQ(Edited(Picture().Make(), MetadataItemKind::Exif, "Exif" + Zeros(2)).Error,
              L"Exif data must begin as a TIFF file does");
    const Picture primary {.Primary = FullAtom("pitm", Number(5, 2)), .Items = List({Item(5, "Exif")})};
    EXPECT_EQ(Edited(primary.Make(), MetadataItemKind::Exif, "").Error, L"Item 5 is needed by another");
}

// Metadata of another picture of the file stay, and a new number is none that anything in the file has.
TEST(CMetadataItemEditorTest, FindsTheMetadataOfThePrimaryPicture)
{
    const Bytes items = List({Item(1, "av01"), Item(2, "av01"), Item(7, "Exif"), Item(8, "Exif"), Item(9, "Exif")});
    const auto edit = [&](const Bytes& references, const Bytes& bytes)
    {
        const Picture picture {.Items = items, .More = FullAtom("iref", references) + Atom("grpl", Number(10, 4))};
        return Edited(picture.Make(), MetadataItemKind::Exif, bytes);
    };
    const Bytes exif = "MM" + Zeros(1) + "*";
    EXPECT_EQ(edit(Describes(7, 2) + Describes(9, 1), exif).GetItem(9), Zeros(4) + exif);
    EXPECT_EQ(edit(Describes(7, 2), exif).GetItem(8), Zeros(4) + exif);
    const Edited added = edit(Describes(7, 2) + Describes(8, 2) + Describes(9, 2), exif);
    EXPECT_THAT(added.GetIDs(), ElementsAre(1, 2, 7, 8, 9, 11));
    EXPECT_EQ(added.Find<IInfAtom>({"iinf"})->GetEntryCount(), 6U);
    const auto& reference = static_cast<const IRefEntryAtom&>(*added.Find<>({"iref"})->GetChildren()[3]);
    EXPECT_EQ(reference.GetFromItemID(), 11U);
    EXPECT_EQ(reference.GetToItemID(0), 1U);
    const Edited removed = edit(Describes(7, 2) + Describes(9, 1), "");
    EXPECT_THAT(removed.GetIDs(), ElementsAre(1, 2, 7));
    EXPECT_EQ(removed.Find<>({"iref"})->GetChildren().GetCount(), 1);
}

TEST(CMetadataItemEditorTest, WidensWhatIsTooNarrow)
{
    // Version 0 has no method, and these sizes no offset and no length.
    const Bytes where =
        FullAtom("iloc", Number(0x0040, 2) + Number(1, 2) + Number(1, 2) + Zeros(2) + Number(20, 4) + Number(1, 2));
    const Picture picture {
        .Items = List({Item(1, "av01"), Item(0xffff, "av01")}), .Where = where, .More = FullAtom("iref", Describes(0xffff, 1))};
    const Edited edited(picture.Make(), MetadataItemKind::XMP, "XMP");
    ASSERT_EQ(edited.Error, L"");
    EXPECT_THAT(edited.GetIDs(), ElementsAre(1, 0xffff, 0x10000));
    EXPECT_EQ(edited.GetItem(0x10000), "XMP");
    const auto* const places = edited.Find<ILocAtom>({"iloc"});
    EXPECT_EQ(places->GetVersion(), 2);
    EXPECT_EQ(places->GetEntries().front().BaseOffset, 20U);
    EXPECT_EQ(places->GetEntries().front().Extents.front().Offset, 0U);
    std::vector<uint32_t> numbers;
    for (const CAtom* const child : edited.Find<>({"iref"})->GetChildren())
        for (const auto* const entry : {static_cast<const IRefEntryAtom*>(child)})
            numbers.insert(numbers.end(), {entry->GetFromItemID(), entry->GetToItemID(0)});
    EXPECT_THAT(numbers, ElementsAre(0xffff, 1, 0x10000, 1));
}

TEST(CMetadataItemEditorTest, TheAtomsCheckEachOther)
{
    const Tree tree(Picture {.Data = Atom("idat", "old")}.Make());
    auto& idat = *tree.Find<IDatAtom>({"idat"});
    const auto getMessage = [](const auto& step)
    {
        try
        {
            step();
        }
        catch (Exception* exception)
        {
            const std::unique_ptr<Exception> owner(exception);
            return owner->Message;
        }
        return ZVString();
    };
    const std::vector<uint8_t> bytes(4);
    EXPECT_EQ(getMessage(
                  [&] {
                      tree.Find<ILocAtom>({"iloc"})->SetNewItemData({1, true}, bytes, idat);
                  }),
              L"Inconsistent results for item 1.  iinf added new entry (1), iloc found existing entry (1)");
    struct Sink : IAtomSink
    {
        bool Write(const void*, int64_t) override { return true; }
    } sink;
    CAtomWriter writer(sink);
    idat.SetData(bytes);
    EXPECT_EQ(getMessage([&] { idat.Write(writer); }), L"IDatAtom writing error");
}
}
