#include "core/string/StringProbe.h"

#include <thread>
#include <utility>

// The cases stand in columns.
// clang-format off

namespace
{
constexpr int32_t Locked = -1;

// The manager of another library, as its strings show it.
class ForeignManager final : public IZVStringManager
{
public:
    ForeignManager() : m_empty(Home().CreateEmptyBlock())
    {
        TakeOver(m_empty);
        ZVStringData::FromCharacters(m_empty)->RefCount.store(ZVStringData::ImmortalCount);
    }

    ~ForeignManager()
    {
        FreeData(ZVStringData::FromCharacters(m_empty));
        EXPECT_EQ(m_live, 0) << "every block comes back to the manager that made it";
    }

    // Makes this manager the maker of a block.
    wchar_t* TakeOver(wchar_t* characters)
    {
        if (characters == Home().GetEmpty())
            return m_empty;
        ZVStringData::FromCharacters(characters)->Manager = this;
        ++m_live;
        return characters;
    }

    ZVStringData* AllocateData(int32_t length, bool pool) override
    {
        return ZVStringData::FromCharacters(TakeOver(Home().AllocateData(length, pool)->Characters()));
    }

    void FreeData(ZVStringData* block) override
    {
        EXPECT_EQ(block->Manager, this);
        --m_live;
        Home().FreeData(block);
    }

    wchar_t* CreateFromWide(const wchar_t* source, int32_t length, int32_t room, bool force, bool trust, bool pool) override
    {
        return TakeOver(Home().CreateFromWide(source, length, room, force, trust, pool));
    }

    wchar_t* CreateFromNarrow(const char* source) override { return TakeOver(Home().CreateFromNarrow(source)); }
    wchar_t* CreateFilled(int32_t length) override { return TakeOver(Home().CreateFilled(length)); }
    wchar_t* CreateEmptyBlock() override { return TakeOver(Home().CreateEmptyBlock()); }
    wchar_t* GetEmpty() override { return m_empty; }

private:
    static ZVStringGlobals& Home() { return ZVStringGlobals::Get(); }

    wchar_t* m_empty;
    int m_live = 0;
};

TEST(ZVStringStorage, EmptyStrings)
{
    ZVString own(L"abc");
    const wchar_t* const block = own.GetText();
    own.Empty();
    EXPECT_EQ(own.GetText(), block);
    EXPECT_EQ(ZVString(own).GetText(), ZVString().GetText());

    ZVString shared(L"abc");
    const ZVString other(shared);
    shared.Empty();
    EXPECT_EQ(shared.GetText(), ZVString().GetText());
    EXPECT_EQ(TextOf(other), L"abc");
    EXPECT_EQ(RefCountOf(other), 1);

    // The immortal block is never written.
    wcscpy(shared.GetBuffer(3), L"abc");
    ZVString().ReleaseBuffer(0);
    EXPECT_EQ(TextOf(ZVString()), L"");
    EXPECT_EQ(RefCountOf(ZVString()), 0x7ffffc17);
}

TEST(ZVStringStorage, BufferOfASharedBlock)
{
    ZVString first(L"abc");
    const ZVString second(first);
    first.GetBuffer(-1, false, true)[0] = L'x';
    EXPECT_EQ(RefCountOf(first), Locked);
    EXPECT_EQ(RefCountOf(second), 1);
    first.ReleaseBuffer(3);
    EXPECT_EQ(RefCountOf(first), 1);
    EXPECT_EQ(TextOf(first), L"xbc");
    EXPECT_EQ(TextOf(second), L"abc");
    ZVString part(second);
    part.ReleaseBuffer(1);
    EXPECT_EQ(TextOf(second), L"abc") << "without a lock a shared block is not written";
    EXPECT_EQ(std::wstring(part.GetBuffer(2)), L"ab");
    EXPECT_EQ(part.GetLength(), 2);
    ZVString dropped(second);
    dropped.GetBuffer(3, false, false);
    EXPECT_EQ(dropped.GetLength(), 0);
}

TEST(ZVStringStorage, BufferSizes)
{
    // The capacity after a request, from a text and a block of just its size.
    const auto capacity = [](size_t startLength, bool isShared, int32_t length, bool isExact)
    {
        const EmptyPool pool;
        ZVString text(std::wstring(startLength, L'x').c_str());
        if (startLength == 0)
            text.GetBuffer(0);
        text.ReleaseBuffer();
        const ZVString other = isShared ? text : ZVString();
        const wchar_t* const before = text.GetText();
        const bool fits = !isShared && length < text.GetCapacity();
        EXPECT_EQ(text.GetBuffer(length, isExact, true) == before, fits);
        EXPECT_EQ(TextOf(text), std::wstring(startLength, L'x'));
        return text.GetCapacity();
    };
    ExpectNumbers({
        {"1 gives 2",                          capacity(0, false, 1, false),        3       },
        {"3 gives 4",                          capacity(1, false, 3, false),        5       },
        {"exact",                              capacity(1, false, 4, true),         5       },
        {"room for text and terminator",       capacity(7, false, 7, false),        8       },
        {"no room for the terminator",         capacity(7, false, 8, false),        17      },
        {"the limit gives the next power",     capacity(1, false, 0x100000, false), 0x200001},
        {"above the limit the next multiple",  capacity(1, false, 0x200002, false), 0x300001},
        {"a multiple stays",                   capacity(1, false, 0x300000, false), 0x300001},
        {"shared block as large as asked for", capacity(1, true, 3, false),         4       },
        {"shared block of the present size",   capacity(7, true, -1, false),        8       },
    });
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

    // The length of a locked block is not kept up, so a NUL in it counts when the block has to move.
    text.GetBuffer(-1)[2] = L'\0';
    text.ReleaseBuffer(4);
    text.GetBuffer(100);
    EXPECT_EQ(TextOf(text), std::wstring(L"ab\0d", 4));
    text.GetBuffer(2000);  // more than any pooled block has
    EXPECT_EQ(TextOf(text), L"ab");

    // Assignment keeps the lock.
    const ZVString source(L"abc");
    text = source;
    EXPECT_EQ(TextOf(text), L"abc");
    EXPECT_EQ(RefCountOf(source), 1);
    text = ZVString(L"moved");
    EXPECT_EQ(TextOf(text), L"moved");
    text = ZVString();
    EXPECT_EQ(TextOf(text), L"");
    EXPECT_EQ(RefCountOf(text), Locked);
}

// Copies, assigns and moves a string whose block must not be shared.
void ExpectPrivateCopies(ZVString& source)
{
    const wchar_t* const block = source.GetText();
    const int32_t count = RefCountOf(source);
    const ZVString copy(source);
    ZVString assigned(L"x");
    assigned = source;
    const ZVString moved(std::move(source));
    for (const ZVString* text : {&copy, static_cast<const ZVString*>(&assigned), &moved})
    {
        EXPECT_NE(text->GetText(), block);
        EXPECT_EQ(TextOf(*text), L"abc");
        EXPECT_EQ(RefCountOf(*text), 1);
        EXPECT_EQ(BlockOf(*text)->Manager, &ZVStringGlobals::Get());
    }
    EXPECT_EQ(source.GetText(), block);  // NOLINT(bugprone-use-after-move): such a string is never moved from
    EXPECT_EQ(RefCountOf(source), count);
}

TEST(ZVStringStorage, LockedAndForeignBlocksAreNotShared)
{
    ZVString locked(L"abc");
    locked.GetBuffer(-1);
    ExpectPrivateCopies(locked);

    ForeignManager foreign;
    ZVString theirs(L"abc");
    foreign.TakeOver(BlockOf(theirs)->Characters());
    ExpectPrivateCopies(theirs);

    // A foreign string stays one, whatever is put into it.
    const ZVString ours(L"ours");
    theirs = ours;
    EXPECT_EQ(TextOf(theirs), L"ours");
    EXPECT_EQ(RefCountOf(ours), 1);
    theirs.GetBuffer(1000);
    theirs.ReleaseBuffer(4);
    EXPECT_EQ(BlockOf(theirs)->Manager, &foreign);
    ZVString second(L"x");
    foreign.TakeOver(BlockOf(second)->Characters());
    second = theirs;
    EXPECT_EQ(second.GetText(), theirs.GetText());
    second.Empty();
    EXPECT_EQ(second.GetText(), foreign.GetEmpty());
    EXPECT_EQ(RefCountOf(theirs), 1);
}

TEST(ZVStringStorage, AppendSizes)
{
    const auto capacity = [](const wchar_t* source, int32_t count, int32_t growBlock)
    {
        const EmptyPool pool;
        ZVString text(L"1234567");
        text.Append(source, count, growBlock);
        EXPECT_EQ(TextOf(text), L"1234567" + std::wstring(source == nullptr ? L"" : count == 1 ? L"a" : L"abc"));
        return text.GetCapacity();
    };
    // ((new length + 1) / block + 1) * block, and a terminator.
    ExpectNumbers({
        {"power of two",                     capacity(L"abc", 3, 0),    17 },
        {"block, up to the NUL",             capacity(L"abc", -1, 100), 101},
        {"block that the terminator fills",  capacity(L"abc", 3, 11),   23 },
        {"block that is larger by one",      capacity(L"abc", 3, 12),   13 },
        {"no room for the terminator alone", capacity(L"abc", 1, 100),  101},
        {"room only",                        capacity(nullptr, 3, 100), 101},
    });
}

TEST(ZVStringStorage, AppendForms)
{
    const ZVString source(L"abc");
    ZVString text;
    text += source;
    EXPECT_EQ(text.GetText(), source.GetText());
    text += text;
    text.AppendPieces(L"-", {L"cdef", 2}, {nullptr, 7}, source);
    text.AppendPieces(text, {text.GetText() + 5, 2});
    EXPECT_EQ(TextOf(text), L"abcabc-cdabcabcabc-cdabcc-");
    text.AppendNarrow("\xe9y", -1);
    text.AppendNarrow("z\0w", 3);
    text.AppendNarrow(nullptr, 3);
    EXPECT_EQ(TextOf(text.Right(5)), std::wstring(L"\xe9yz\0w", 5));
}

TEST(ZVStringStorage, StringsThatShareABlockMayLiveInSeveralThreads)
{
    const ZVString shared(L"shared");
    const auto work = [](const ZVString& mine)
    {
        for (int round = 0; round < 20000; ++round)
            EXPECT_EQ((ZVString(mine) + L"!").GetLength(), ZVString(mine).GetLength() + 1);
    };
    {
        std::jthread threads[] = {std::jthread(work, shared), std::jthread(work, shared), std::jthread(work, shared)};
    }
    EXPECT_EQ(RefCountOf(shared), 1);
}
}
