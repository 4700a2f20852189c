#include "mp4/AtomBytes.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{
using namespace AtomBytes;

// What a call throws; empty if it does not.
template <class Call>
ZVString GetMessageOf(Call call)
{
    try
    {
        call();
    }
    catch (Exception* exception)
    {
        const std::unique_ptr<Exception> owner(exception);
        return owner->Message;
    }
    return L"";
}

constexpr uint32_t TRAK = FourCC("trak");
constexpr uint32_t FREE = FourCC("free");

class CAtomTreeTest : public testing::Test
{
protected:
    Bytes m_bytes = Atom("moov", Atom("free", "1") + Atom("trak", Atom("mdia", FullAtom("hdlr", Zeros(4) + "vide" + Zeros(12)))) +
                                     Atom("free", "22"));
    Tree m_tree {m_bytes};
    CContainerAtom& m_moov = *m_tree.Find<CContainerAtom>();
    CContainerAtom& m_mdia = *m_tree.Find<CContainerAtom>({"trak", "mdia"});
};

TEST_F(CAtomTreeTest, FindsChildrenByTypeAndIndex)
{
    int32_t index = 1;
    const CAtom* const second = m_moov.GetChild(FREE, index);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->GetSize(), 10U);
    index = 5;
    EXPECT_EQ(m_moov.GetChild(FREE, index), nullptr);
    EXPECT_EQ(index, 3);
    EXPECT_EQ(m_moov.GetFirstChild(FREE)->GetSize(), 9U);
    EXPECT_EQ(m_moov.GetFirstChild(FourCC("mdia")), nullptr);
    EXPECT_EQ(&m_moov.GetRequiredChild(TRAK), m_moov.GetFirstChild(TRAK));
    EXPECT_STREQ(GetMessageOf([this] { m_moov.GetRequiredChild(FREE); }), L"moov atom has wrong number of free atoms");
    EXPECT_STREQ(GetMessageOf([this] { m_moov.GetRequiredChild(FourCC("mvhd")); }), L"moov atom has wrong number of mvhd atoms");
    EXPECT_EQ(m_mdia.GetHandlerType(), FourCC("vide"));
    EXPECT_EQ(m_moov.GetHandlerType(), 0U);
}

TEST_F(CAtomTreeTest, FindsParents)
{
    EXPECT_EQ(&m_mdia.GetParent(TRAK), m_moov.GetFirstChild(TRAK));
    EXPECT_STREQ(GetMessageOf([this] { m_mdia.GetParent(FREE); }), L"mdia Parent is not free: trak");
    EXPECT_STREQ(GetMessageOf([this] { m_moov.GetParent(TRAK); }), L"moov Parent is null");
    EXPECT_EQ(m_mdia.FindParent(FourCC("moov")), &m_moov);
    EXPECT_EQ(m_mdia.FindParent(FourCC("mdia")), nullptr);
}

TEST_F(CAtomTreeTest, WhatAClassCannotDoIsThrown)
{
    CAtom& leaf = *m_moov.GetFirstChild(FREE);
    EXPECT_STREQ(GetMessageOf([&leaf] { leaf.Verify(CMDATList(), false); }), L"CAtom::Verify not implemented");
    EXPECT_STREQ(GetMessageOf([&leaf] { leaf.Append(leaf); }), L"Append not implemented for this atom");
    EXPECT_STREQ(GetMessageOf([&] { m_mdia.AppendMultiple(leaf); }),
                 L"CContainerAtom::AppendMultiple not implemented for mdia with child free");
    EXPECT_STREQ(GetMessageOf([&] { m_mdia.AppendRoot(leaf); }), L"CContainerAtom::AppendRoot not implemented for mdia");
    EXPECT_STREQ(GetMessageOf([&] { m_mdia.AppendMissing(leaf); }), L"CContainerAtom::AppendMissing not implemented for mdia");
}

TEST_F(CAtomTreeTest, ACopyIsATreeOfItsOwn)
{
    m_tree.Roots.push_back(std::unique_ptr<CAtom>(m_mdia.Clone(&m_moov)));
    m_tree.Roots.erase(m_tree.Roots.begin());
    CAtom& copy = *m_tree.Roots.front();
    EXPECT_EQ(copy.GetParent(), &m_moov);
    EXPECT_EQ(m_tree.Find({"hdlr"})->GetParent(), &copy);
    EXPECT_EQ(m_tree.Find<CContainerAtom>()->GetHandlerType(), FourCC("vide"));
    EXPECT_EQ(m_tree.Write(), m_bytes.substr(8 + 9 + 8, copy.GetSize()));
}

TEST_F(CAtomTreeTest, AHeaderIsLongWhenItMustBe)
{
    // One that was read is not kept when the size fits into the short one.
    EXPECT_EQ(Tree(LargeAtom("moov", LargeAtom("free", "1"))).Write(), Atom("moov", Atom("free", "1")));
    m_moov.SetForceLarge(true);
    m_moov.GetFirstChild(FREE)->SetForceLarge(true);
    const Bytes written = m_tree.Write();
    EXPECT_EQ(written.substr(0, 16 + 17), Number(1, 4) + "moov" + Number(m_bytes.size() + 16, 8) + LargeAtom("free", "1"));
    EXPECT_EQ(written.size(), m_bytes.size() + 16);
}

TEST_F(CAtomTreeTest, ASizeOf31BitsHasTheLongHeader)
{
    CAtom& leaf = *m_moov.GetFirstChild(FREE);
    for (const auto& [size, isLarge] : {std::pair(0x7ffffffeU, false), std::pair(0x7fffffffU, true)})
    {
        leaf.SetSize(size);
        EXPECT_EQ(leaf.IsLarge(), isLarge);
    }
}

TEST(CAtomDumpTest, ShowsTheTreeAndIfAskedTheFields)
{
    const Tree tree(Atom("moov", Atom("\xa9x\x1by", "abc") + FullAtom("nmhd", "", 1, 2)));
    std::ostringstream brief;
    tree.Find()->Dump(0, 1, brief);
    EXPECT_EQ(brief.str(), " Atom: moov\tPosition: 0, length=31 \n"
                           "   Atom: \xc2\xa9x.y\tPosition: 8, length=11 \n"
                           "   Atom: nmhd\tPosition: 19, length=12 \n");
    std::ostringstream full;
    tree.Find()->Dump(1, 0, full);
    EXPECT_EQ(full.str(), "Atom: moov\tPosition: 0, length=31 \n"
                          "  Atom: \xc2\xa9x.y\tPosition: 8, length=11 \n"
                          "      body: 3 bytes: abc\n"
                          "  Atom: nmhd\tPosition: 19, length=12 \n"
                          "      version: 1\n"
                          "      flags: 2\n");
}
}
