#pragma once

#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdint>

class IZVStringManager;

// The header of a string's heap block. The characters and their NUL come right after it, and a ZVString points at them.
struct ZVStringData
{
    // A block with this count belongs to a caller that holds its raw buffer; it is exclusive and is never shared.
    static constexpr int32_t LockedCount = -1;
    // A block with this count is never freed and never written. It lies below INT_MAX to leave room for copies, which count it up
    // like any other.
    static constexpr int32_t ImmortalCount = INT_MAX - 1000;

    IZVStringManager* Manager;      // made the block and must free it
    int32_t Length;                 // characters without the terminator
    int32_t Capacity;               // characters the block can hold, including the terminator
    std::atomic<int32_t> RefCount;  // strings that share the block, or one of the two values above

    wchar_t* Characters();
    static ZVStringData* FromCharacters(wchar_t* characters);
};

// Bytes from the start of a block to its characters. The structure's own size would add padding.
inline constexpr size_t ZVStringHeaderSize = offsetof(ZVStringData, RefCount) + sizeof(int32_t);
static_assert(ZVStringHeaderSize % alignof(wchar_t) == 0);
static_assert(sizeof(wchar_t) == 4, "every text format of the product counts on 32-bit characters");

inline wchar_t* ZVStringData::Characters()
{
    return reinterpret_cast<wchar_t*>(reinterpret_cast<char*>(this) + ZVStringHeaderSize);
}

inline ZVStringData* ZVStringData::FromCharacters(wchar_t* characters)
{
    return reinterpret_cast<ZVStringData*>(reinterpret_cast<char*>(characters) - ZVStringHeaderSize);
}

// Allocates the blocks of strings. Every shared library has its own manager, and a block always goes back to the manager that
// made it.
class IZVStringManager
{
public:
    // Returns a block for length characters and a terminator, with its length set and a count of 1. The terminator is not
    // written. With usePool this may be a block that was freed before, with a larger capacity than asked for. Throws
    // std::bad_alloc.
    virtual ZVStringData* AllocateData(int32_t length, bool usePool) = 0;

    // Frees a block, or keeps it for reuse; null is ignored.
    virtual void FreeData(ZVStringData* block) = 0;

    // Returns the characters of a new string: the first sourceLength characters of source, cut to allocLength, in a block with
    // room for allocLength. A sourceLength of -1 means up to the NUL, an allocLength of -1 means the source's length. A NUL
    // inside source ends it, unless trustLength is set. An allocLength of 0 returns the empty string, unless forceAllocate asks
    // for a block of its own.
    virtual wchar_t* CreateFromWide(const wchar_t* source, int32_t sourceLength, int32_t allocLength, bool forceAllocate,
                                    bool trustLength, bool usePool) = 0;

    // Returns the characters of a new string from NUL-terminated bytes; each byte becomes the character of that value. Null gives
    // the empty string.
    virtual wchar_t* CreateFromNarrow(const char* source) = 0;

    // Returns the characters of a new string of that length, all zero.
    virtual wchar_t* CreateFilled(int32_t length) = 0;

    // Returns the characters of a new string of length 0 in a block of its own.
    virtual wchar_t* CreateEmptyBlock() = 0;

    // Returns the characters of the manager's immortal empty string.
    virtual wchar_t* GetEmpty() = 0;

protected:
    ~IZVStringManager() = default;
};
