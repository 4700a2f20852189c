#include "mp4/save/CMp4Layout.h"

#include "mp4/samples/FilmBytes.h"
#include "mp4/save/CMp4SaveCheck.h"

#include <gtest/gtest.h>

namespace
{
using namespace FilmBytes;

constexpr char DataStart[] = "DATA";

// A file that begins with some bytes and goes on with zeros, however long it is.
class LongFile final : public CGeneralReader
{
public:
    LongFile(const Bytes& start, int64_t length) : m_start(start), m_length(length) {}

    int64_t Read(void* bytes, int64_t count) override
    {
        const int64_t part = std::min(count, m_length - m_position);
        memset(bytes, 0, static_cast<size_t>(part));
        if (m_position < std::ssize(m_start))
            memcpy(bytes, m_start.data() + m_position, std::min(static_cast<size_t>(part), m_start.size() - m_position));
        m_position += part;
        return part;
    }
    int64_t Seek(int64_t position) override { return m_position = position; }
    int64_t GetLength() override { return m_length; }
    bool IsOpen() override { return true; }

private:
    Bytes m_start;
    int64_t m_length;
    int64_t m_position = 0;
};

// Counts what is written, and finds where in it the data begin.
struct CountingSink : IAtomSink
{
    bool Write(const void* bytes, int64_t count) override
    {
        const Bytes start(static_cast<const char*>(bytes), static_cast<size_t>(std::min<int64_t>(count, 1000)));
        if (const size_t found = start.find(DataStart); found != Bytes::npos)
            Start = Count + found;
        Count += static_cast<uint64_t>(count);
        return true;
    }

    uint64_t Count = 0;
    uint64_t Start = 0;
};

void ReadAll(CAtomReader& reader, ZVOwnedPtrArray<CAtom>& roots)
{
    while (std::unique_ptr<CAtom> atom = CAtom::Read(reader, nullptr, UINT64_MAX))
        roots.Add(atom.release());
}

// Around the sizes from which a header is long. A layout that is wrong by the 8 bytes that it grows would destroy the film.
TEST(CMp4LayoutTest, KnowsWhereTheDataWillBegin)
{
    struct Row
    {
        int64_t Body;
        uint64_t Header;
    };
    for (const auto& [body, header] : {
             Row {0x7ffffff5, 8 },
              Row {0x7ffffff6, 8 },
              Row {0x7ffffff7, 16},
              Row {0x7ffffff8, 16},
              Row {0x7fffffff, 16},
             Row {0x80000000, 16}
    })
        for (const bool isForced : {false, true})
        {
            SCOPED_TRACE(body);
            const Bytes start = Atom("free") + Number(1, 4) + "mdat" + Number(static_cast<uint64_t>(body) + 16, 8) + DataStart;
            LongFile file(start, 24 + body);
            CAtomReader reader(&file);
            ZVOwnedPtrArray<CAtom> roots;
            ReadAll(reader, roots);
            ASSERT_EQ(roots.GetCount(), 2);
            auto& mdat = static_cast<CMDATAtom&>(*roots[1]);
            mdat.SetForceLarge(isForced);
            const CMp4Layout layout(roots);
            EXPECT_EQ(layout.GetDataStart(mdat), 8 + (isForced ? 16 : header));
            EXPECT_EQ(layout.MovesData(), layout.GetDataStart(mdat) != 24);
            // Two of them are enough to be written, which takes a while.
            if (isForced || body < 0x7ffffff6 || body > 0x7ffffff7)
                continue;
            CountingSink sink;
            CAtomWriter writer(sink);
            for (CAtom* const root : roots)
                root->Write(writer);
            writer.Flush();
            EXPECT_EQ(sink.Start, layout.GetDataStart(mdat));
            EXPECT_EQ(static_cast<int64_t>(sink.Count), layout.GetFileSize());
        }
}

// What keeps a film from being saved whose movie grows by an atom; empty if nothing does.
ZVString GetRefusal(const char* table, int width, size_t added)
{
    const Bytes movie = Movie(Track("vide", Tables {.Offsets = Table(table, {0xffffff80}, 1, width)}.Make()));
    constexpr int64_t DataSize = 0x100000000;
    LongFile file(movie + Number(1, 4) + "mdat" + Number(DataSize + 16, 8), std::ssize(movie) + 16 + DataSize);
    CAtomReader reader(&file);
    ZVOwnedPtrArray<CAtom> roots;
    ReadAll(reader, roots);
    CMDATList mdats;
    mdats.Add(static_cast<CMDATAtom*>(roots[1]));
    roots[0]->Verify(mdats, false);
    Tree atom(Atom("free", Zeros(added)));
    static_cast<CContainerAtom*>(roots[0])->AddChild(std::move(atom.Roots.front()));
    try
    {
        CMp4SaveCheck::CheckMove(roots, CMp4Layout(roots));
    }
    catch (Exception* exception)
    {
        const std::unique_ptr<Exception> owner(exception);
        return owner->Message;
    }
    return {};
}

TEST(CMp4LayoutTest, RefusesToMoveAChunkBeyondItsOffset)
{
    EXPECT_EQ(GetRefusal("stco", 4, 119), L"");
    EXPECT_EQ(GetRefusal("stco", 4, 120), L"A chunk would lie where no offset of 32 bits reaches");
    EXPECT_EQ(GetRefusal("co64", 8, 120), L"");
}
}
