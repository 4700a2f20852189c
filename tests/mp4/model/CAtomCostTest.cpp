// What the atoms of one file may cost, whatever the file says.

#include "mp4/AtomBytes.h"
#include "mp4/model/CFREEAtom.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

static std::atomic<size_t> LargestRequest;

// All of this program's memory is asked for here. The compiler warns of what it sees of a pair that it has put into a caller.
[[gnu::noinline]] void* operator new(size_t size)
{
    LargestRequest = std::max(LargestRequest.load(), size);
    void* const memory = malloc(size);
    return memory == nullptr ? throw std::bad_alloc() : memory;
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, size_t) noexcept
{
    free(memory);
}

namespace
{
using namespace AtomBytes;

// Counts what is read of it.
class CountingFile final : public MemoryFile
{
public:
    using MemoryFile::MemoryFile;

    int64_t Read(void* bytes, int64_t count) override
    {
        const int64_t read = MemoryFile::Read(bytes, count);
        BytesRead += read;
        return read;
    }

    int64_t BytesRead = 0;
};

ZVString GetMessageOf(CAtomReader& reader)
{
    try
    {
        while (CAtom::Read(reader, nullptr, UINT64_MAX) != nullptr)
            ;
    }
    catch (Exception* exception)
    {
        const std::unique_ptr<Exception> owner(exception);
        return owner->Message;
    }
    return L"";
}

Bytes Nest(int depth, const Bytes& type, Bytes inner = "")
{
    for (; depth > 0; --depth)
        inner = Atom(type, inner);
    return inner;
}

TEST(CAtomCostTest, AtomsMayBe64Deep)
{
    EXPECT_STREQ(Tree(Nest(64, "moov")).Message, L"");
    const Tree tree(Atom("free") + Nest(65, "moov"));
    EXPECT_STREQ(tree.Message, L"There are more than 64 atoms inside each other");
    EXPECT_EQ(tree.Roots.size(), 1U);
}

TEST(CAtomCostTest, AMillionAtomsEndEveryList)
{
    Bytes children;
    for (int32_t count = 0; count < CAtomLimits::MaximumAtoms; ++count)
        children += Atom("free");
    const Bytes file = Atom("moov", children);
    const Tree tree(file + Atom("free"));
    EXPECT_STREQ(tree.Message, L"");
    ASSERT_EQ(tree.Roots.size(), 1U);
    EXPECT_EQ(tree.Find<CContainerAtom>()->GetChildren().GetCount(), 999'999);
    EXPECT_EQ(tree.Find<CContainerAtom>()->GetPassedOver().GetCount(), 8);
    EXPECT_TRUE(tree.Write() == file);
}

// Each one is tried in two ways, and so is all that is in it.
TEST(CAtomCostTest, MetaAtomsInsideEachOtherAreReadAFewTimesOnly)
{
    constexpr int Depth = 60;
    Bytes file = Atom("free", Zeros(1 << 20));
    for (int count = 0; count < Depth; ++count)
        file = FullAtom("meta", file);
    const auto size = static_cast<int64_t>(file.size());
    CountingFile stream(file);
    CAtomReader reader(&stream);
    EXPECT_STREQ(GetMessageOf(reader), L"");
    EXPECT_GT(reader.Limits.RereadBytes, size);
    EXPECT_LE(reader.Limits.RereadBytes, 2 * size + (1 << 20));
    EXPECT_LT(stream.BytesRead, 8 * size);
}

// Of a size and a count that are small enough for memory.
TEST(CAtomCostTest, ABodyThatIsNotThereIsNotAskedFor)
{
    for (const char* const type : {"free", "hint", "hdlr", "uuid", "data", "elst", "stts", "stsc", "stco", "co64"})
    {
        LargestRequest = 0;
        const Tree tree(Number(14 << 20, 4) + type + Number(0, 4) + Number(14 << 16, 4) + Zeros(84));
        EXPECT_EQ(tree.Message, ReadPastEnd) << type;
        EXPECT_LE(LargestRequest, 1U << 17) << type;
    }
}

TEST(CAtomCostTest, ALargeBodyStaysInTheFile)
{
    for (const int64_t excess : {0, 1})
    {
        const Bytes file = Atom("free", Bytes(static_cast<size_t>(CAtomBytes::MaximumInMemory + excess), 'x'));
        const Tree tree(file + Atom("free"));
        ASSERT_EQ(tree.Roots.size(), 2U);
        const CAtomBytes& body = tree.Find<CFREEAtom>()->GetBody();
        EXPECT_EQ(body.GetCount(), CAtomBytes::MaximumInMemory + excess);
        EXPECT_EQ(body.View().empty(), excess == 1);
        EXPECT_TRUE(tree.Write() == file + Atom("free"));
    }
}
}
