#include "core/string/StringProbe.h"

#include <new>

namespace
{
constexpr int32_t Locked = -1;

// The manager of another library.
class ForeignManager final : public IZVStringManager
{
public:
    void TakeOver(const ZVString& text) { BlockOf(text)->Manager = this; }

    wchar_t* CreateFromWide(const wchar_t* source, int32_t length, int32_t room, bool, bool trust, bool pool) override
    {
        wchar_t* const characters = ZVStringGlobals::Get().CreateFromWide(source, length, room, true, trust, pool);
        ZVStringData::FromCharacters(characters)->Manager = this;
        return characters;
    }

    void FreeData(ZVStringData* block) override
    {
        EXPECT_EQ(block->Manager, this) << "every block comes back to the manager that made it";
        ZVStringGlobals::Get().FreeData(block);
    }

    // Strings never ask for these.
    ZVStringData* AllocateData(int32_t, bool) override { return nullptr; }
    wchar_t* CreateFromNarrow(const char*) override { return nullptr; }
    wchar_t* CreateFilled(int32_t) override { return nullptr; }
    wchar_t* CreateEmptyBlock() override { return nullptr; }
    wchar_t* GetEmpty() override { return ZVStringGlobals::Get().GetEmpty(); }
};

TEST(ZVStringStorage, EmptyAndSharedBlocks)
{
    ZVString first(L"abc");
    const ZVString second(first);
    first.GetBuffer(-1, false, true)[0] = L'x';
    EXPECT_EQ(RefCountOf(first), Locked);
    EXPECT_EQ(RefCountOf(second), 1);
    first.ReleaseBuffer(3);
    EXPECT_EQ(TextOf(first), L"xbc");
    EXPECT_EQ(TextOf(second), L"abc");
    ZVString part(second);
    part.ReleaseBuffer(1);
    EXPECT_EQ(TextOf(second), L"abc") << "without a lock a shared block is not written";
    first = second;
    first.Empty();
    EXPECT_EQ(first.GetText(), ZVString().GetText());
    wcscpy(first.GetBuffer(3), L"abc");
    EXPECT_EQ(TextOf(ZVString()), L"") << "the immortal block is never written";
    EXPECT_EQ(RefCountOf(ZVString()), 0x7ffffc17);
}

TEST(ZVStringStorage, LockedBuffer)
{
    ZVString text(L"abcdef");
    wchar_t* buffer = text.GetBuffer(10);
    EXPECT_EQ(text.GetBuffer(5), buffer) << "a lock is not nested";
    buffer[4] = L'\0';
    text.ReleaseBuffer(-1);
    EXPECT_EQ(RefCountOf(text), 1);
    EXPECT_EQ(TextOf(text), L"abcd");
    // The length of a locked block is not updated, so a NUL in it counts when the block has to move.
    text.GetBuffer(-1)[2] = L'\0';
    text.GetBuffer(2000);
    EXPECT_EQ(TextOf(text), L"ab");
    for (const wchar_t* source : {L"moved", L""})
    {
        text = ZVString(source);
        EXPECT_EQ(TextOf(text), source);
        EXPECT_EQ(RefCountOf(text), Locked) << "assignment keeps the lock";
    }
}

// Copies, assigns and moves a string whose block must not be shared.
void ExpectPrivateCopies(ZVString& source)
{
    const wchar_t* const block = source.GetText();
    const int32_t count = RefCountOf(source);
    ZVString texts[] = {source, L"x", std::move(source)};
    texts[1] = source;  // NOLINT(bugprone-use-after-move): such a string is never moved from
    for (const ZVString& text : texts)
    {
        EXPECT_NE(text.GetText(), block);
        EXPECT_STREQ(text, L"abc");
        EXPECT_EQ(BlockOf(text)->Manager, &ZVStringGlobals::Get());
    }
    EXPECT_EQ(source.GetText(), block);
    EXPECT_EQ(RefCountOf(source), count);
}

TEST(ZVStringStorage, LockedAndForeignBlocksAreNotShared)
{
    ZVString locked(L"abc");
    locked.GetBuffer(-1);
    ExpectPrivateCopies(locked);
    ForeignManager foreign;
    ZVString theirs(L"abc");
    foreign.TakeOver(theirs);
    ExpectPrivateCopies(theirs);
    const ZVString ours(L"ours");
    theirs = ours;
    EXPECT_EQ(TextOf(theirs), L"ours");
    EXPECT_EQ(RefCountOf(ours), 1);
    theirs.GetBuffer(1000);
    theirs.ReleaseBuffer(4);
    EXPECT_EQ(BlockOf(theirs)->Manager, &foreign) << "a foreign string stays one";
}

TEST(ZVStringStorage, AppendForms)
{
    // The capacity after three characters were appended to seven, by the growth block: ((10 + 1) / block + 1) * block and a
    // terminator. A null text only makes room.
    ExpectRows<std::pair<const wchar_t*, int32_t>, int32_t>(
        {
            {{L"abc", 0},    17 },
            {{nullptr, 100}, 101},
            {{L"abc", 11},   23 },
            {{L"abc", 12},   13 }
    },
        [](const auto& sourceAndBlock)
        {
            const EmptyPool pool;
            ZVString grown(L"1234567");
            grown.Append(sourceAndBlock.first, 3, sourceAndBlock.second);
            EXPECT_EQ(TextOf(grown), sourceAndBlock.first == nullptr ? L"1234567" : L"1234567abc");
            return grown.GetCapacity();
        });

    const ZVString source(L"abc");
    ZVString text;
    text += source;
    EXPECT_EQ(text.GetText(), source.GetText());
    text += text;
    text.AppendPieces(L"-", ZVStringPiece(L"cdef", 2), ZVStringPiece(nullptr, 7), source);
    text.AppendPieces(text, ZVStringPiece(text.GetText() + 5, 2));
    text.AppendNarrow("\xe9y", -1);
    text.AppendNarrow("z\0w", 3);
    EXPECT_EQ(TextOf(text), std::wstring(L"abcabc-cdabcabcabc-cdabcc-\xe9yz\0w", 31));
}
}
