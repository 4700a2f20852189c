#include "mp4/heif/CMetadataItemEditor.h"

#include "mp4/AtomBytes.h"
#include "mp4/heif/IDatAtom.h"
#include "mp4/heif/IInfAtom.h"
#include "mp4/heif/ILocAtom.h"
#include "mp4/heif/InfeAtom.h"
#include "mp4/model/EncodeText.h"

#include <gmock/gmock.h>
#include <map>
#include <numeric>

namespace
{
using namespace AtomBytes;
using testing::ElementsAre;

const Bytes Exif = "II*" + Zeros(1);

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

// The meta atom after a change, or why it was refused.
struct Edited
{
    Edited(const Bytes& meta, MetadataItemKind kind, const Bytes& bytes)
    {
        const auto edit = [&]
        {
            Tree before(meta);
            CMetadataItemEditor editor(before.Reader, *before.Find<CContainerAtom>());
            editor.Set(kind, AsBytes(bytes));
            const std::unique_ptr<CAtom> edited = editor.TakeMeta();
            After = std::make_unique<Tree>(WriteAll(std::vector {edited.get()}));
        };
        Error = GetMessage(edit);
    }

    template <class Atom = CContainerAtom>
    Atom* Find(const char* type) const
    {
        return After->Find<Atom>({type});
    }

    // The bytes of idat, behind its header.
    Bytes GetData() const { return WriteAll(std::vector {Find<CAtom>("idat")}).substr(8); }

    // What an item in idat holds.
    Bytes GetItem(uint32_t id) const
    {
        Bytes item;
        for (const ILocEntry& entry : Find<ILocAtom>("iloc")->GetEntries())
            for (const ILocExtent& extent : entry.Extents)
                if (entry.ItemID == id)
                    item += GetData().substr(entry.BaseOffset + extent.Offset, extent.Length);
        return item;
    }

    std::vector<uint32_t> GetIDs() const
    {
        std::vector<uint32_t> ids;
        for (const CAtom* const item : Find("iinf")->GetChildren())
            ids.push_back(static_cast<const InfeAtom*>(item)->GetItemID());
        return ids;
    }

    std::unique_ptr<Tree> After;
    ZVString Error;
};

TEST(CMetadataItemEditorTest, ItemsKeepWhatTheyHold)
{
    struct Row
    {
        std::vector<Place> Before;
        Bytes Data;
        std::vector<Bytes> Items;  // of the numbers from 2 on
    };
    // clang-format off
    const std::map<std::string, Row> rows = {
        {"gaps", {{{2, 1, 0, {{10, 4}}}, {3, 1, 0, {{2, 6}}}}, "abcdefghijXMP", {"ghij", "abcdef"}}},
        {"bases", {{{2, 1, 8, {{2, 4}}}, {3, 1, 2, {{0, 6}}}}, "abcdefghijXMP", {"ghij", "abcdef"}}},
        {"pieces", {{{2, 1, 0, {{12, 2}, {2, 1}}}}, "aijXMP", {"ija"}}},
        {"the same bytes", {{{2, 1, 0, {{2, 6}}}, {3, 1, 0, {{2, 6}}}}, "abcdefXMP", {"abcdef", "abcdef"}}},
        {"overlap", {{{2, 1, 0, {{4, 6}}}, {3, 1, 0, {{2, 4}}}, {4, 1, 0, {{3, 1}}}}, "abcdef..XMP", {"cdef..", "abcd", "b"}}},
        {"open end", {{{2, 1, 0, {{10, 0}}}}, "ghijXMP", {"ghij"}}},
    };
    // clang-format on
    for (const auto& [name, row] : rows)
    {
        const Picture picture {.Where = Places(row.Before), .Data = Atom("idat", "..abcdef..ghij")};
        const Edited edited(picture.Make(), MetadataItemKind::XMP, "XMP");
        ASSERT_EQ(edited.Error, L"") << name;
        EXPECT_EQ(edited.GetData(), row.Data) << name;
        uint32_t id = 2;
        for (const Bytes& item : row.Items)
            EXPECT_EQ(edited.GetItem(id++), item) << name;
        EXPECT_EQ(edited.GetItem(id), "XMP") << name;
    }
}

TEST(CMetadataItemEditorTest, RefusesWhatCouldHarmOtherItems)
{
    struct Row
    {
        Picture Before;
        const wchar_t* Error;
    };
    // clang-format off
    const Row rows[] = {
        {{.Primary = ""}, L"The metadata cannot be related to the primary picture"},
        {{.Items = ""}, L"meta atom has wrong number of iinf atoms"},
        {{.Items = FullAtom("iinf", Number(2, 2) + Item(1, "av01"))}, L"The list of the file's items is not understood"},
        {{.Items = List({Item(1, "av01"), Item(1, "Exif")})}, L"Item 1 stands in the list of items more than once"},
        {{.Items = List({Item(5, "Exif", 1)})}, L"Item 5 is encrypted"},
        {{.Where = Places({{1, 0, 0, {{UINT32_MAX, 5}}}})}, L"Item 1 lies outside the file"},
        {{.Where = Places({{1, 1, 0, {{0, 1}}}})}, L"Item 1 lies outside the bytes of idat"},
        {{.Where = Places({{1, 2, 0, {{0, 1}}}})}, L"Item 1 lies in a way that cannot be followed"},
        {{.Where = Places({{1, 1, 0, {{0, 1}, {0, 0}}}})}, L"Item 1 has several extents, and one without a length"},
        {{.Where = Places({{1, 1, 0, {{0, 0}}}, {2, 1, 0, {{0, 0}}}}), .Data = Atom("idat", Zeros(40 << 20))},
         L"The items in idat hold more than 64 MiB"},
        {{.Items = List({Item(5, "Exif")}), .Where = Places({{5, 0, 0, {}}, {5, 0, 0, {}}})}, L"Item 5 lies in more than one place"},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(Edited(row.Before.Make(), MetadataItemKind::Exif, Exif).Error, row.Error);
    EXPECT_EQ(Edited(Picture().Make(), MetadataItemKind::Exif, "Exif").Error, L"Exif data must begin as a TIFF file does");
    const Picture primary {.Primary = FullAtom("pitm", Number(5, 2)), .Items = List({Item(5, "Exif")})};
    EXPECT_EQ(Edited(primary.Make(), MetadataItemKind::Exif, "").Error, L"Item 5 is needed by another");
}

// Metadata of another picture stay, and a new item has a number that nothing in the file has, not even a group.
TEST(CMetadataItemEditorTest, FindsTheMetadataOfThePrimaryPicture)
{
    const auto edit = [](const Bytes& references, const Bytes& bytes)
    {
        const Picture picture {.Items = List({Item(1, "av01"), Item(7, "Exif"), Item(8, "Exif"), Item(9, "Exif")}),
                               .More = FullAtom("iref", references) + Atom("grpl", Number(10, 4))};
        return Edited(picture.Make(), MetadataItemKind::Exif, bytes);
    };
    EXPECT_EQ(edit(Describes(7, 2) + Describes(9, 1), Exif).GetItem(9), Zeros(4) + Exif);
    const Edited related = edit(Describes(7, 2), Exif);
    EXPECT_EQ(related.GetItem(8), Zeros(4) + Exif);
    EXPECT_EQ(WriteAll(std::vector {related.Find("iref")}), FullAtom("iref", Describes(7, 2) + Describes(8, 1)));
    Picture inFile {.Items = List({Item(5, "Exif")})};
    inFile.Where = Places({
        Place {5, 0, 3, {{20, 5}}}
    });
    EXPECT_EQ(Edited(inFile.Make(), MetadataItemKind::Exif, Exif).GetItem(5), Zeros(4) + Exif);
    const Edited added = edit(Describes(7, 2) + Describes(8, 2) + Describes(9, 2), Exif);
    EXPECT_THAT(added.GetIDs(), ElementsAre(1, 7, 8, 9, 11));
    EXPECT_EQ(added.Find<IInfAtom>("iinf")->GetEntryCount(), 5U);
    const Edited removed = edit(Describes(7, 2) + Describes(9, 1), "");
    EXPECT_THAT(removed.GetIDs(), ElementsAre(1, 7));
    EXPECT_EQ(WriteAll(std::vector {removed.Find("iref")}), FullAtom("iref", Describes(7, 2)));
}

TEST(CMetadataItemEditorTest, WidensWhatIsTooNarrow)
{
    // Version 0 has no method, and these sizes no offset and no length.
    const Picture picture {
        .Items = List({Item(1, "av01"), Item(0xffff, "av01")}),
        .Where = FullAtom("iloc", Number(0x0040, 2) + Number(1, 2) + Number(1, 2) + Zeros(2) + Number(20, 4) + Number(1, 2)),
        .More = FullAtom("iref", Describes(0xffff, 1))};
    const Edited edited(picture.Make(), MetadataItemKind::XMP, "XMP");
    ASSERT_EQ(edited.Error, L"");
    EXPECT_THAT(edited.GetIDs(), ElementsAre(1, 0xffff, 0x10000));
    const Bytes ownPlace = Number(1, 4) + Zeros(4) + Number(20, 4) + Number(1, 2) + Zeros(8);
    const Bytes newPlace = Number(0x10000, 4) + Number(1, 2) + Zeros(2) + Zeros(4) + Number(1, 2) + Zeros(4) + Number(3, 4);
    EXPECT_EQ(WriteAll(std::vector {edited.Find("iloc")}),
              FullAtom("iloc", Number(0x4440, 2) + Number(2, 4) + ownPlace + newPlace, 2));
    const Bytes references = Atom("cdsc", Number(0xffff, 4) + Number(1, 2) + Number(1, 4)) +
                             Atom("cdsc", Number(0x10000, 4) + Number(1, 2) + Number(1, 4));
    EXPECT_EQ(WriteAll(std::vector {edited.Find("iref")}), FullAtom("iref", references, 1));
}

TEST(CMetadataItemEditorTest, TheAtomsNoticeWhatDoesNotFit)
{
    const Tree tree(Picture {.Data = Atom("idat", "old")}.Make());
    auto& idat = *tree.Find<IDatAtom>({"idat"});
    const auto add = [&] { tree.Find<ILocAtom>({"iloc"})->SetNewItemData({1, true}, AsBytes(Exif), idat); };
    EXPECT_EQ(GetMessage(add), L"Inconsistent results for item 1.  iinf added new entry (1), iloc found existing entry (1)");
    struct Sink : IAtomSink
    {
        bool Write(const void*, int64_t) override { return true; }
    } sink;
    CAtomWriter writer(sink);
    idat.SetData({});
    EXPECT_EQ(GetMessage([&] { idat.Write(writer); }), L"IDatAtom writing error");
}
}
