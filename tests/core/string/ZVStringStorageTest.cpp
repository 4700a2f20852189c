#include "core/string/StringProbe.h"

#include <new>
#include <thread>
#include <tuple>

namespace
{
constexpr int32_t Locked = -1;

// The manager of another library, as its strings show it.
class ForeignManager final : public IZVStringManager
{
public:
    ForeignManager() { ZVStringData::FromCharacters(m_empty)->RefCount.store(ZVStringData::ImmortalCount); }

    ~ForeignManager() { FreeData(ZVStringData::FromCharacters(m_empty)); }

    // Makes this manager the maker of a block.
    wchar_t* TakeOver(wchar_t* characters)
    {
        if (characters == Home().GetEmpty())
            return m_empty;
        ZVStringData::FromCharacters(characters)->Manager = this;
        return characters;
    }

    void FreeData(ZVStringData* block) override
    {
        EXPECT_EQ(block->Manager, this) << "every block comes back to the manager that made it";
        Home().FreeData(block);
    }

    wchar_t* CreateFromWide(const wchar_t* source, int32_t length, int32_t room, bool force, bool trust, bool pool) override
    {
        return TakeOver(Home().CreateFromWide(source, length, room, force, trust, pool));
    }

    // Strings never ask for these.
    ZVStringData* AllocateData(int32_t, bool) override { return nullptr; }
    wchar_t* CreateFromNarrow(const char*) override { return nullptr; }
    wchar_t* CreateFilled(int32_t) override { return nullptr; }
    wchar_t* CreateEmptyBlock() override { return nullptr; }
    wchar_t* GetEmpty() override { return m_empty; }

private:
    static ZVStringGlobals& Home() { return ZVStringGlobals::Get(); }

    wchar_t* const m_empty = TakeOver(Home().CreateEmptyBlock());
};

TEST(ZVStringStorage, EmptyAndSharedBlocks)
{
    ZVString first(L"abc");
    const ZVString second(first);
    first.GetBuffer(-1, false, true)[0] = L'x';
    EXPECT_TRUE(RefCountOf(first) == Locked && RefCountOf(second) == 1);
    first.ReleaseBuffer(3);
    EXPECT_TRUE(RefCountOf(first) == 1 && TextOf(first) + TextOf(second) == L"xbcabc");
    ZVString part(second), dropped(second);
    part.ReleaseBuffer(1);
    EXPECT_EQ(TextOf(second), L"abc") << "without a lock a shared block is not written";
    EXPECT_EQ(std::wstring(part.GetBuffer(2)), L"ab");
    dropped.GetBuffer(3, false, false);
    EXPECT_EQ(dropped.GetLength(), 0);
    first = second;
    first.Empty();
    EXPECT_TRUE(first.GetText() == ZVString().GetText() && RefCountOf(second) == 1);
    // The immortal block is never written.
    wcscpy(first.GetBuffer(3), L"abc");
    ZVString().ReleaseBuffer(0);
    EXPECT_TRUE(TextOf(ZVString()).empty() && RefCountOf(ZVString()) == 0x7ffffc17);
}

TEST(ZVStringStorage, BufferSizes)
{
    constexpr bool Shared = true, Exact = true;
    // The length of a text in a block of just its size, whether that is shared, and what is asked for.
    using Request = std::tuple<size_t, bool, int32_t, bool>;
    // clang-format off
    ExpectRows<Request, int32_t>({
        {{0, !Shared, 1, !Exact}, 3}, {{7, !Shared, 7, !Exact}, 8}, {{7, !Shared, 8, !Exact}, 17},
        {{1, !Shared, 0x100000, !Exact}, 0x200001}, {{1, !Shared, 0x200002, !Exact}, 0x300001},
        {{1, !Shared, 4, Exact}, 5}, {{1, Shared, 3, !Exact}, 4}, {{7, Shared, -2, !Exact}, 8}, {{7, !Shared, -2, Exact}, 8},
    }, [](const Request& request)
    {
        const auto [startLength, isShared, length, isExact] = request;
        const EmptyPool pool;
        ZVString text(std::wstring(startLength, L'x').c_str());
        text.GetBuffer(static_cast<int32_t>(startLength));
        text.ReleaseBuffer();
        const ZVString other = isShared ? text : ZVString();
        const wchar_t* const before = text.GetText();
        const bool fits = !isShared && length < text.GetCapacity();
        EXPECT_EQ(text.GetBuffer(length, isExact, true) == before, fits);
        return TextOf(text) == std::wstring(startLength, L'x') ? text.GetCapacity() : -1;
    });
    // clang-format on
    for (const bool isExact : {false, true})
        EXPECT_THROW(ZVString(L"abc").GetBuffer(INT32_MAX, isExact), std::bad_alloc) << "no room for a terminator";
}

TEST(ZVStringStorage, LockedBuffer)
{
    ZVString text(L"abcdef");
    wchar_t* buffer = text.GetBuffer(10);
    EXPECT_EQ(text.GetBuffer(5), buffer) << "a lock is not nested";
    buffer[4] = L'\0';
    text.ReleaseBuffer(-1);
    EXPECT_TRUE(RefCountOf(text) == 1 && TextOf(text) == L"abcd");
    // The length of a locked block is not kept up, so a NUL in it counts when the block has to move.
    text.GetBuffer(-1)[2] = L'\0';
    text.ReleaseBuffer(4);
    text.GetBuffer(100);
    EXPECT_EQ(TextOf(text), std::wstring(L"ab\0d", 4));
    buffer = text.GetBuffer(2000);  // more than any pooled block has
    EXPECT_TRUE(TextOf(text) == L"ab" && buffer[3] == L'\0');
    // Assignment keeps the lock.
    for (const wchar_t* source : {L"moved", L""})
    {
        text = ZVString(source);
        EXPECT_TRUE(TextOf(text) == source && RefCountOf(text) == Locked);
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
        EXPECT_TRUE(text.GetText() != block && text == L"abc" && BlockOf(text)->Manager == &ZVStringGlobals::Get());
    EXPECT_TRUE(source.GetText() == block && RefCountOf(source) == count);
}

TEST(ZVStringStorage, LockedAndForeignBlocksAreNotShared)
{
    ZVString locked(L"abc");
    locked.GetBuffer(-1);
    ExpectPrivateCopies(locked);
    ForeignManager foreign;
    ZVString theirs(L"abc"), second(L"x");
    foreign.TakeOver(BlockOf(theirs)->Characters());
    foreign.TakeOver(BlockOf(second)->Characters());
    ExpectPrivateCopies(theirs);

    // A foreign string stays one, whatever is put into it.
    const ZVString ours(L"ours");
    theirs = ours;
    EXPECT_TRUE(TextOf(theirs) == L"ours" && RefCountOf(ours) == 1);
    theirs.GetBuffer(1000);
    theirs.ReleaseBuffer(4);
    EXPECT_EQ(BlockOf(theirs)->Manager, &foreign);
    second = theirs;
    second.Empty();
    EXPECT_TRUE(second.GetText() == foreign.GetEmpty() && RefCountOf(theirs) == 1);
}

TEST(ZVStringStorage, AppendForms)
{
    // The capacity after an append by blocks: ((new length + 1) / block + 1) * block, and a terminator.
    const auto capacity = [](const wchar_t* source, int32_t growBlock)
    {
        const EmptyPool pool;
        ZVString grown(L"1234567");
        grown.Append(source, 3, growBlock);
        return TextOf(grown) == (source == nullptr ? L"1234567" : L"1234567abc") ? grown.GetCapacity() : -1;
    };
    EXPECT_TRUE(capacity(L"abc", 0) == 17 && capacity(nullptr, 100) == 101);
    EXPECT_TRUE(capacity(L"abc", 11) == 23 && capacity(L"abc", 12) == 13) << "the terminator may need another block";

    const ZVString source(L"abc");
    ZVString text;
    text += source;
    EXPECT_EQ(text.GetText(), source.GetText());
    text += text;
    text.AppendPieces(L"-", ZVStringPiece(L"cdef", 2), ZVStringPiece(nullptr, 7), source);
    text.AppendPieces(text, ZVStringPiece(text.GetText() + 5, 2));
    text.AppendNarrow("\xe9y", -1);
    text.AppendNarrow("z\0w", 3);
    text.AppendNarrow(nullptr, 3);
    EXPECT_EQ(TextOf(text), std::wstring(L"abcabc-cdabcabcabc-cdabcc-\xe9yz\0w", 31));
}

// What is locked has no share to keep it when its block moves, and the block is too large for the pool to keep.
TEST(ZVStringStorage, PartsOfALockedStringPutIntoIt)
{
    const std::wstring letters(3000, L'x');
    const auto changed = [&letters](auto change)
    {
        ZVString text((letters + L"yz").c_str());
        text.GetBuffer(text.GetCapacity() - 1);
        change(text, text.GetText() + letters.size());
        return TextOf(text);
    };
    EXPECT_EQ(changed([](auto& text, const wchar_t* part) { text.AppendPieces(L"-", part, part); }), letters + L"yz-yzyz");
    EXPECT_EQ(changed([](auto& text, const wchar_t* part) { text.Insert(0, part); }), L"yz" + letters + L"yz");
    EXPECT_EQ(changed([](auto& text, const wchar_t* part) { text.Replace(3000, 3001, ZVStringPiece(part, 2)); }),
              letters + L"yzz");
}

TEST(ZVStringStorage, StringsThatShareABlockMayLiveInSeveralThreads)
{
    const ZVString shared(L"shared");
    const auto work = [](const ZVString& mine)
    {
        for (int round = 0; round < 20000; ++round)
            EXPECT_EQ((ZVString(mine) + L"!").GetLength(), ZVString(mine).GetLength() + 1);
    };
    std::thread first(work, shared), second(work, shared);
    first.join();
    second.join();
    EXPECT_EQ(RefCountOf(shared), 1);
}
}
