#include "core/string/ZVStringGlobals.h"

#include "core/string/ZVThreading.h"

#include <algorithm>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <new>

uint32_t g_stringGlobalsGuard = ZVStringGlobalsAbsent;
ZVStringGlobals* g_pStringGlobals = nullptr;

namespace
{
// No place of the pool.
constexpr int32_t NoSlot = -1;

// The no-break space counts as printable in every locale, because titles and file names contain it.
constexpr wchar_t NoBreakSpace = 0xA0;

struct ClassTest
{
    int (*Holds)(wint_t character);
    uint8_t Bit;
};

constexpr ClassTest ClassTests[] = {
    {iswdigit, ZVStringGlobals::Digit      },
    {iswalpha, ZVStringGlobals::Alphabetic },
    {iswspace, ZVStringGlobals::Space      },
    {iswupper, ZVStringGlobals::Upper      },
    {iswlower, ZVStringGlobals::Lower      },
    {iswpunct, ZVStringGlobals::Punctuation},
    {iswprint, ZVStringGlobals::Printable  },
};
}

// Holds the pool's mutex for a scope and keeps the figures for debugging. It can be taken recursively. Nothing inside the scope
// starts a thread, so a process with a single thread does not take the mutex, which would cost more than the rest of a short
// string.
class ZVStringGlobals::PoolLock
{
public:
    explicit PoolLock(ZVStringGlobals& globals) : m_globals(globals), m_isNeeded(!__libc_single_threaded)
    {
        if (m_isNeeded)
            pthread_mutex_lock(&m_globals.m_mutex);
        ++m_globals.m_lockCount;
        m_globals.m_lastHolder = pthread_self();
    }

    ~PoolLock()
    {
        --m_globals.m_lockCount;
        if (m_isNeeded)
            pthread_mutex_unlock(&m_globals.m_mutex);
    }

    PoolLock(const PoolLock&) = delete;
    PoolLock& operator=(const PoolLock&) = delete;

private:
    ZVStringGlobals& m_globals;
    const bool m_isNeeded;
};

ZVStringGlobals::ZVStringGlobals()
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&m_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);

    g_stringGlobalsGuard = ZVStringGlobalsReady;

    ZVStringData* empty = AllocateData(0, true);
    empty->RefCount.store(ZVStringData::ImmortalCount, std::memory_order_relaxed);
    empty->Characters()[0] = L'\0';
    m_empty = empty->Characters();

    RebuildCharacterTables(false);
}

void ZVStringGlobals::Create()
{
    g_pStringGlobals = new ZVStringGlobals();
}

void ZVStringGlobals::RebuildCharacterTables(bool setLocaleFromEnvironment)
{
    if (setLocaleFromEnvironment)
        setlocale(LC_ALL, "");
    for (wchar_t character = 0; character < TableSize; ++character)
    {
        const wint_t code = static_cast<wint_t>(character);
        uint8_t classes = character == NoBreakSpace ? Printable : uint8_t {0};
        for (const ClassTest& test : ClassTests)
            if (test.Holds(code) != 0)
                classes |= test.Bit;
        m_classes[character] = classes;
        m_lowered[character] = static_cast<wchar_t>(towlower(code));
    }
}

// Takes the block with the smallest surplus over need, the first of equal ones, or returns null.
ZVStringData* ZVStringGlobals::TakeFromPool(int32_t need)
{
    const PoolLock lock(*this);
    if (need > m_largestPooled)
        return nullptr;
    int32_t largest = 0;
    int32_t bestSlot = NoSlot;
    int32_t bestSurplus = INT32_MAX;
    for (int32_t slot = 0; slot < PoolSize && bestSurplus > GoodSurplus; ++slot)
    {
        if (m_pool[slot] == nullptr)
            continue;
        largest = std::max(largest, m_pool[slot]->Capacity);
        const int32_t surplus = m_pool[slot]->Capacity - need;
        if (surplus < 0 || surplus >= bestSurplus)
            continue;
        bestSurplus = surplus;
        bestSlot = slot;
    }
    if (bestSlot == NoSlot)
    {
        m_largestPooled = largest;
        return nullptr;
    }
    ZVStringData* block = m_pool[bestSlot];
    m_pool[bestSlot] = nullptr;
    --m_pooledCount;
    return block;
}

bool ZVStringGlobals::GiveToPool(ZVStringData* block)
{
    const PoolLock lock(*this);
    if (m_pooledCount >= PoolSize)
        return false;
    int32_t slot = 0;
    while (m_pool[slot] != nullptr)
        ++slot;
    m_pool[slot] = block;
    m_largestPooled = std::max(m_largestPooled, block->Capacity);
    ++m_pooledCount;
    return true;
}

ZVStringData* ZVStringGlobals::AllocateData(int32_t length, bool usePool)
{
    if (length < 0 || length == INT32_MAX)
        throw std::bad_alloc();
    const int32_t need = length + 1;
    ZVStringData* block = usePool && need <= MaximumPooledCapacity ? TakeFromPool(need) : nullptr;
    if (block == nullptr)
    {
        const size_t size = ZVStringHeaderSize + static_cast<size_t>(need) * sizeof(wchar_t);
        // The size of the structure includes padding at its end, which a block of one character must still hold.
        block = ::new (static_cast<void*>(new char[std::max(size, sizeof(ZVStringData))])) ZVStringData;
        block->Capacity = need;
    }
    block->Length = length;
    block->RefCount.store(1, std::memory_order_relaxed);
    // A manager marks a block as alive, so it is set last.
    ZVMemoryFence();
    block->Manager = this;
    return block;
}

void ZVStringGlobals::FreeData(ZVStringData* block)
{
    if (block == nullptr)
        return;
    if (block->Capacity <= MaximumPooledCapacity && GiveToPool(block))
        return;
    delete[] reinterpret_cast<char*>(block);
}

wchar_t* ZVStringGlobals::CreateFromWide(const wchar_t* source, int32_t sourceLength, int32_t allocLength, bool forceAllocate,
                                         bool trustLength, bool usePool)
{
    size_t measured = static_cast<size_t>(std::max(sourceLength, 0));
    if (source == nullptr)
        measured = 0;
    else if (sourceLength == -1)
        measured = wcslen(source);
    else if (!trustLength && sourceLength > 0)
        measured = wcsnlen(source, measured);
    if (measured >= INT32_MAX)
        throw std::bad_alloc();
    const int32_t length = static_cast<int32_t>(measured);

    if (allocLength == -1)
        allocLength = length;
    if (allocLength == 0 && !forceAllocate)
        return m_empty;

    ZVStringData* block = AllocateData(allocLength, usePool);
    const int32_t copied = std::min(allocLength, length);
    wchar_t* characters = block->Characters();
    if (copied > 0)
        memcpy(characters, source, static_cast<size_t>(copied) * sizeof(wchar_t));
    characters[copied] = L'\0';
    block->Length = copied;
    return characters;
}

wchar_t* ZVStringGlobals::CreateFromNarrow(const char* source)
{
    const size_t measured = source == nullptr ? 0 : strlen(source);
    if (measured == 0)
        return m_empty;
    if (measured >= INT32_MAX)
        throw std::bad_alloc();
    const int32_t length = static_cast<int32_t>(measured);
    wchar_t* characters = AllocateData(length, true)->Characters();
    for (int32_t index = 0; index < length; ++index)
        characters[index] = static_cast<unsigned char>(source[index]);
    characters[length] = L'\0';
    return characters;
}

wchar_t* ZVStringGlobals::CreateFilled(int32_t length)
{
    if (length == 0)
        return m_empty;
    wchar_t* characters = AllocateData(length, true)->Characters();
    wmemset(characters, L'\0', static_cast<size_t>(length) + 1);
    return characters;
}

wchar_t* ZVStringGlobals::CreateEmptyBlock()
{
    wchar_t* characters = AllocateData(0, true)->Characters();
    characters[0] = L'\0';
    return characters;
}
