#include "core/string/ZVString.h"

#include "core/string/ZVWideText.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <span>

namespace
{
// Up to this size a buffer grows to a power of two, above it to a multiple of this size.
constexpr int32_t LargeBufferStep = 0x100000;

// The size of a new buffer for a length. It leaves enough room for repeated appends to take linear time.
int32_t GrownBufferSize(int32_t length)
{
    if (length < 1)
        return 1;
    if (length > LargeBufferStep)
    {
        const int64_t rounded = (static_cast<int64_t>(length) + LargeBufferStep - 1) / LargeBufferStep * LargeBufferStep;
        return static_cast<int32_t>(std::min<int64_t>(rounded, INT32_MAX - 1));  // leaves room for a terminator
    }
    int32_t size = 2;
    while (size <= length)
        size *= 2;
    return size;
}

int32_t CheckedSum(int32_t length, int32_t count)
{
    const int64_t sum = static_cast<int64_t>(length) + count;
    if (sum >= INT32_MAX)
        throw std::bad_alloc();
    return static_cast<int32_t>(sum);
}

int32_t CheckedLength(size_t length)
{
    if (length >= INT32_MAX)
        throw std::bad_alloc();
    return static_cast<int32_t>(length);
}

void CopyCharacters(wchar_t* target, const wchar_t* source, int32_t count)
{
    memcpy(target, source, static_cast<size_t>(count) * sizeof(wchar_t));
}
}

ZVString::ZVString(ZVString&& other)
{
    ZVStringData* block = other.Data();
    ZVStringGlobals& globals = ZVStringGlobals::Get();
    if (IsLocked(block) || block->Manager != &globals)
    {
        m_text = Share(other);
        return;
    }
    m_text = other.m_text;
    other.m_text = globals.GetEmpty();
}

ZVString& ZVString::operator=(const ZVString& other)
{
    if (this == &other)
        return *this;
    const ZVStringData* source = other.Data();
    if (source->Length == 0)
    {
        Empty();
        return *this;
    }
    ZVStringData* old = Data();
    const bool wasLocked = IsLocked(old);
    if (!wasLocked && !IsLocked(source) && source->Manager == old->Manager)
    {
        ZVAtomicIncrement(other.Data()->RefCount);
        m_text = other.m_text;
    }
    else
    {
        m_text = old->Manager->CreateFromWide(other.m_text, source->Length, -1, false, false, true);
    }
    Release(old);
    if (wasLocked)
        GetBuffer(-1, false, true);
    return *this;
}

ZVString& ZVString::operator=(ZVString&& other)
{
    ZVStringData* block = Data();
    ZVStringData* source = other.Data();
    if (this == &other || IsLocked(block) || IsLocked(source) || source->Manager != block->Manager)
        return *this = static_cast<const ZVString&>(other);
    std::swap(m_text, other.m_text);
    other.Empty();
    return *this;
}

ZVString& ZVString::operator=(const wchar_t* text)
{
    return *this = ZVString(text);
}

ZVString ZVString::FromUTF8(const char* text)
{
    ZVString result;
    result.SetFromUTF8(text);
    return result;
}

void ZVString::Empty()
{
    ZVStringData* block = Data();
    if (block->Length < 1)
        return;
    if (!IsShared(block))
    {
        m_text[0] = L'\0';
        block->Length = 0;
        return;
    }
    m_text = block->Manager->GetEmpty();
    Release(block);
}

// Replaces the block by a new one, which is locked.
void ZVString::TakeLocked(wchar_t* characters)
{
    ZVStringData* old = Data();
    m_text = characters;
    Data()->RefCount.store(ZVStringData::LockedCount, std::memory_order_relaxed);
    ZVMemoryFence();
    Release(old);
}

wchar_t* ZVString::GetBuffer(int32_t length, bool exact, bool keepContents)
{
    if (length == INT32_MAX)
        throw std::bad_alloc();  // a terminator would not fit
    length = std::max(length, -1);
    ZVStringData* block = Data();
    const wchar_t* contents = keepContents ? m_text : nullptr;
    if (IsShared(block))
    {
        TakeLocked(block->Manager->CreateFromWide(contents, block->Length, length, true, true, true));
    }
    else if (length != -1 && block->Capacity <= length)
    {
        const int32_t size = exact ? length : GrownBufferSize(length);
        const int32_t oldLength = keepContents ? block->Length : 0;
        // Whoever writes into a locked block does not update its length, so that is not trusted.
        TakeLocked(block->Manager->CreateFromWide(contents, block->Length, size, false, !IsLocked(block), true));
        // If a NUL has cut the text, whoever still uses the old length finds zeros there and not old memory.
        for (int32_t index = GetLength() + 1; index < oldLength; ++index)
            m_text[index] = L'\0';
    }
    else
    {
        block->RefCount.store(ZVStringData::LockedCount, std::memory_order_relaxed);
        ZVMemoryFence();
    }
    return m_text;
}

void ZVString::ReleaseBuffer(int32_t length)
{
    ZVStringData* block = Data();
    // Without a lock the block may be shared, and a shared block must not be written.
    if (IsShared(block))
        return;
    if (length == -1)
    {
        length = static_cast<int32_t>(wcsnlen(m_text, static_cast<size_t>(block->Capacity) - 1));
    }
    length = std::clamp(length, 0, block->Capacity - 1);
    m_text[length] = L'\0';
    block->Length = length;
    if (IsLocked(block))
    {
        block->RefCount.store(1, std::memory_order_relaxed);
        ZVMemoryFence();
    }
}

void ZVString::Append(const wchar_t* source, int32_t count, int32_t growBlock)
{
    if (count < 0)
        count = ZVWideText::LengthOf(source);
    const int32_t length = GetLength();
    const int32_t newLength = CheckedSum(length, count);
    const bool growsByBlock = growBlock >= 1 && GetCapacity() <= newLength;
    const int64_t blockSize = growsByBlock ? ((static_cast<int64_t>(newLength) + 1) / growBlock + 1) * growBlock : newLength;
    if (source == nullptr)
    {
        GetBuffer(growsByBlock ? CheckedLength(static_cast<size_t>(blockSize)) : length, growsByBlock, true);
        ReleaseBuffer(length);
        return;
    }
    if (count == 0)
        return;
    const bool isOwnText = IsOwnText(source);
    if (isOwnText && IsLocked(Data()))
    {
        // When a locked block moves, what follows a NUL is lost, so a position in the old block may not exist in the new one.
        ZVString copy;
        copy.Append(source, count);
        Append(copy.m_text, count, growBlock);
        return;
    }
    const ptrdiff_t ownPosition = isOwnText ? source - m_text : -1;
    wchar_t* buffer = GetBuffer(CheckedLength(static_cast<size_t>(blockSize)), growsByBlock, true);
    CopyCharacters(buffer + length, ownPosition < 0 ? source : buffer + ownPosition, count);
    ReleaseBuffer(newLength);
}

void ZVString::Append(const ZVString& other)
{
    if (GetLength() == 0)
        *this = other;
    else
        Append(other.m_text, other.GetLength());
}

void ZVString::AppendNarrow(const char* source, int32_t count)
{
    if (source != nullptr && count < 0)
        count = CheckedLength(strlen(source));
    if (source == nullptr || count < 1)
        return;
    const int32_t length = GetLength();
    const int32_t newLength = CheckedSum(length, count);
    wchar_t* buffer = GetBuffer(newLength);
    for (int32_t index = 0; index < count; ++index)
        buffer[length + index] = static_cast<unsigned char>(source[index]);
    ReleaseBuffer(newLength);
}

void ZVString::AppendPieceList(ZVStringPiece* first, ZVStringPiece* end)
{
    const std::span<ZVStringPiece> pieces(first, end);
    const int32_t length = GetLength();
    int32_t newLength = length;
    bool hasOwnText = false;
    for (ZVStringPiece& piece : pieces)
    {
        if (piece.Characters == nullptr || piece.Count < 0)
            piece.Count = ZVWideText::LengthOf(piece.Characters);
        newLength = CheckedSum(newLength, piece.Count);
        hasOwnText |= piece.Count > 0 && IsOwnText(piece.Characters);
    }
    if (newLength == length)
        return;
    if (hasOwnText)
    {
        // Pieces of this string move when its block moves, so they are joined in another string first.
        ZVString joined;
        joined.GetBuffer(newLength - length);
        joined.ReleaseBuffer(0);
        joined.AppendPieceList(first, end);
        Append(joined.m_text, joined.GetLength());
        return;
    }
    wchar_t* target = GetBuffer(newLength) + length;
    for (const ZVStringPiece& piece : pieces)
    {
        if (piece.Count < 1)
            continue;
        CopyCharacters(target, piece.Characters, piece.Count);
        target += piece.Count;
    }
    ReleaseBuffer(newLength);
}

ZVString& ZVString::operator+=(const ZVString& other)
{
    Append(other);
    return *this;
}

ZVString& ZVString::operator+=(const wchar_t* text)
{
    Append(text);
    return *this;
}

ZVString& ZVString::operator+=(wchar_t character)
{
    AppendCharacter(character);
    return *this;
}
