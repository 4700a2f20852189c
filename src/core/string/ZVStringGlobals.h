#pragma once

#include "core/string/IZVStringManager.h"

#include <pthread.h>

// The string manager of this copy of the core library: the immortal empty string, a small pool of blocks for reuse, and tables
// that lower and classify the characters up to 255. There is one. The first string creates it and it is never destroyed, so
// strings in static objects are valid from the first constructor to the last destructor.
class ZVStringGlobals final : public IZVStringManager
{
public:
    // Bits of a character's class.
    static constexpr uint8_t Digit = 1;
    static constexpr uint8_t Alphabetic = 2;
    static constexpr uint8_t Space = 4;
    static constexpr uint8_t Upper = 8;
    static constexpr uint8_t Lower = 16;
    static constexpr uint8_t Punctuation = 32;
    static constexpr uint8_t Printable = 64;

    // Codes below this are looked up in the tables; the system library is asked about the others.
    static constexpr wchar_t TableSize = 256;

    // The one manager. The first call creates it, and must come from the main thread before another thread starts.
    static ZVStringGlobals& Get();

    ZVStringData* AllocateData(int32_t length, bool usePool) override;
    void FreeData(ZVStringData* block) override;
    wchar_t* CreateFromWide(const wchar_t* source, int32_t sourceLength, int32_t allocLength, bool forceAllocate,
                            bool trustLength, bool usePool) override;
    wchar_t* CreateFromNarrow(const char* source) override;
    wchar_t* CreateFilled(int32_t length) override;
    wchar_t* CreateEmptyBlock() override;
    wchar_t* GetEmpty() override { return m_empty; }

    // Fills the character tables again from the process's locale. With setLocaleFromEnvironment the locale is first set from the
    // environment. Main thread only.
    void RebuildCharacterTables(bool setLocaleFromEnvironment);

    // The lowered form and the class bits of a code, which must be from 0 to 255.
    wchar_t LowerFromTable(wchar_t character) const { return m_lowered[character]; }
    uint8_t ClassFromTable(wchar_t character) const { return m_classes[character]; }

private:
    // More blocks than a task has in use at once, and few enough for a scan to cost less than an allocation.
    static constexpr int32_t PoolSize = 16;
    // Blocks of up to this many characters are kept: most strings are short, and long ones would only hold on to memory.
    static constexpr int32_t MaximumPooledCapacity = 1031;
    // A block with at most this many characters to spare is good enough to end the scan.
    static constexpr int32_t GoodSurplus = 15;

    class PoolLock;

    ZVStringGlobals();
    static void Create();

    ZVStringData* TakeFromPool(int32_t need);
    bool GiveToPool(ZVStringData* block);

    pthread_mutex_t m_mutex;  // recursive, guards the pool
    int32_t m_lockCount = 0;  // these two are for whoever debugs a process that hangs
    pthread_t m_lastHolder {};
    wchar_t* m_empty = nullptr;
    ZVStringData* m_pool[PoolSize] = {};
    int32_t m_pooledCount = 0;
    int32_t m_largestPooled = 0;  // no block in the pool has a larger capacity; a request for more skips the scan
    wchar_t m_lowered[TableSize] = {};
    uint8_t m_classes[TableSize] = {};
};

// The guard is initialised data, so it says "not yet created" whichever static constructor asks first.
inline constexpr uint32_t ZVStringGlobalsAbsent = 0x35f2ab21;
inline constexpr uint32_t ZVStringGlobalsReady = 0xb23a8c33;
extern uint32_t g_stringGlobalsGuard;
extern ZVStringGlobals* g_pStringGlobals;

inline ZVStringGlobals& ZVStringGlobals::Get()
{
    if (g_stringGlobalsGuard != ZVStringGlobalsReady) [[unlikely]]
        Create();
    return *g_pStringGlobals;
}
