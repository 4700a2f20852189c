#include "mp4/AtomBytes.h"

#include <gtest/gtest.h>

namespace
{
using namespace AtomBytes;

TEST(CAtomTreeTest, AHeaderIsLongWhenItMustBe)
{
    // One that was read is not kept when the size fits into the short one.
    const Bytes bytes = Atom("moov", Atom("free", "1") + Atom("free", "22"));
    const Tree tree(LargeAtom("moov", LargeAtom("free", "1") + Atom("free", "22")));
    EXPECT_EQ(tree.Write(), bytes);
    tree.Find()->SetForceLarge(true);
    tree.Find({"free"})->SetForceLarge(true);
    EXPECT_EQ(tree.Write(), LargeAtom("moov", LargeAtom("free", "1") + Atom("free", "22")));
}
}
