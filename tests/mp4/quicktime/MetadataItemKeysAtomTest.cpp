#include "mp4/quicktime/MetadataItemKeysAtom.h"

#include "KeyBytes.h"

#include <gtest/gtest.h>

using namespace AtomBytes;
using namespace std::string_literals;

namespace
{
constexpr uint32_t MDTA = MetadataItemKeysAtom::MDTA;
}

// Whatever the counts and sizes say, the list is written back as it stood.
TEST(MetadataItemKeysAtom, EndsWhereItsBytesOrItsCountEnd)
{
    // clang-format off
    const struct
    {
        const char* Name;
        Bytes Body;
        int32_t Count;
    } rows[] = {
        {"no count",            Zeros(4),                                                    0},
        {"half a count",        Zeros(6),                                                    0},
        {"four billion",        Zeros(4) + "\xff\xff\xff\xff" + Key("a") + Key("b"),         2},
        {"bytes behind",        Zeros(4) + Number(1, 4) + Key("a") + Key("b"),               1},
        {"a key without text",  Zeros(4) + Number(2, 4) + Key("") + Key("b"),                2},
        {"half a key",          Zeros(4) + Number(2, 4) + Key("a") + "\0\0\0\11"s,           1},
        {"a size of 7",         Zeros(4) + Number(2, 4) + Number(7, 4) + "mdta" + Key("b"),  2},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        const Bytes atom = Atom("keys", row.Body);
        const Tree tree(atom);
        ASSERT_EQ(tree.Message, L"") << row.Name;
        EXPECT_EQ(tree.Find<MetadataItemKeysAtom>()->GetKeyCount(), row.Count) << row.Name;
        EXPECT_EQ(tree.Write(), atom) << row.Name;
    }
}

TEST(MetadataItemKeysAtom, FailsWithAKeyThatIsLongerThanItself)
{
    const Bytes keys = FullAtom("keys", Number(1, 4) + Number(16, 4) + "mdta" + "abc");
    EXPECT_EQ(Tree(keys).Message, L"Read past EOF");
    EXPECT_EQ(Tree(keys + Atom("free", Zeros(100))).Message, L"CAtom::Read Expected empty size -5, Pos 0, Size 32, keys\n");
    const Bytes huge = FullAtom("keys", Number(1, 4) + Number(UINT32_MAX, 4) + "mdta" + "abc");
    EXPECT_EQ(Tree(huge).Message, L"Read past EOF");
}

TEST(MetadataItemKeysAtom, LooksAtSoManyKeysOnly)
{
    Bytes entries;
    for (int index = 0; index < 0x10000 + 5; ++index)
        entries += Key("k");
    const Bytes atom = FullAtom("keys", Number(0x10000 + 5, 4) + entries);
    const Tree tree(atom);
    auto* const keys = tree.Find<MetadataItemKeysAtom>();
    EXPECT_EQ(keys->GetKeyCount(), 0x10000);
    EXPECT_EQ(keys->FindKey(MDTA, L"new", MissingKey::Add), -1);
    EXPECT_TRUE(tree.Write() == atom);
}
