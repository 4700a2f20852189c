// ZVString: conversions between wide characters and bytes.

#include "core/containers/ZVBuffer.h"
#include "core/string/ZVString.h"
#include "core/string/ZVUTF8.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

namespace
{
// The decoder's buffer sizes: most names fit into the first, most lines of text into the second. Only longer texts are worth
// counting.
constexpr int32_t FirstDecodeLength = 31;
constexpr int32_t SecondDecodeLength = 260;

// Zero bytes after a text, enough to end it in every encoding at every alignment.
constexpr int32_t TerminatorSize = 8;

constexpr uint32_t ByteOrderMark = 0xfeff;
constexpr uint32_t SwappedByteOrderMark = 0xfffe;

template <class Unit>
Unit LoadUnit(const void* units, int32_t index)
{
    Unit unit;
    memcpy(&unit, static_cast<const uint8_t*>(units) + static_cast<size_t>(index) * sizeof(Unit), sizeof unit);
    return unit;
}

uint32_t Swapped(uint32_t unit)
{
    return __builtin_bswap32(unit);
}

uint16_t Swapped(uint16_t unit)
{
    return __builtin_bswap16(unit);
}

// Moves the units that are not zero together and returns how many there are.
template <class Unit>
int32_t DropZeroUnits(uint8_t* bytes, int32_t count)
{
    int32_t kept = 0;
    for (int32_t index = 0; index < count; ++index)
    {
        const Unit unit = LoadUnit<Unit>(bytes, index);
        if (unit == 0)
            continue;
        memcpy(bytes + static_cast<size_t>(kept) * sizeof(Unit), &unit, sizeof unit);
        ++kept;
    }
    return kept;
}

bool HasUTF8Mark(const uint8_t* bytes, int32_t count)
{
    return count >= 3 && bytes[0] == 0xef && bytes[1] == 0xbb && bytes[2] == 0xbf;
}

bool HasUTF16Mark(const uint8_t* bytes, int32_t count)
{
    return count >= 2 && ((bytes[0] == 0xff && bytes[1] == 0xfe) || (bytes[0] == 0xfe && bytes[1] == 0xff));
}

// The encoding that a walk over the sequences of a text without a mark suggests.
ZVEncoding EncodingFromSequences(const uint8_t* bytes, int32_t count)
{
    bool hasValid = false;
    bool hasInvalid = false;
    for (int32_t position = 0; position < count;)
    {
        if (bytes[position] == 0)
            return position + 2 < count && bytes[position + 1] == 0 && bytes[position + 2] == 0 ? ZVEncoding::UTF32
                                                                                                : ZVEncoding::UTF16;
        const int32_t length = ZVUTF8::SequenceLength(bytes + position, static_cast<size_t>(count - position));
        hasValid |= length > 1;
        hasInvalid |= length == 1 && bytes[position] >= 0x80;
        position += length;
    }
    return hasValid && !hasInvalid ? ZVEncoding::UTF8 : ZVEncoding::Narrow;
}
}

void ZVString::SetFromNarrow(const char* text, int32_t count)
{
    size_t length = 0;
    if (text != nullptr && count == -1)
        length = strlen(text);
    else if (text != nullptr && count > 0)
        length = strnlen(text, static_cast<size_t>(count));
    if (length >= INT32_MAX)
        throw std::bad_alloc();
    Empty();
    AppendNarrow(text, static_cast<int32_t>(length));
}

void ZVString::SetFromUTF8(const char* text)
{
    if (text == nullptr || *text == '\0')
    {
        Empty();
        return;
    }
    const uint8_t* bytes = reinterpret_cast<const uint8_t*>(text);
    wchar_t* buffer = GetBuffer(FirstDecodeLength, false, false);
    int32_t room = GetCapacity() - 1;
    int32_t written = 0;
    while (true)
    {
        // A byte becomes at most one character, so no more bytes than this are read before the room is checked again.
        const uint8_t* runEnd = bytes + strnlen(reinterpret_cast<const char*>(bytes), static_cast<size_t>(room - written));
        while (bytes < runEnd)
        {
            const size_t plain = ZVUTF8::WidenASCII(bytes, static_cast<size_t>(runEnd - bytes), buffer + written);
            bytes += plain;
            written += static_cast<int32_t>(plain);
            for (; bytes < runEnd && *bytes >= 0x80; ++written)
            {
                const int32_t length = ZVUTF8::SequenceLength(bytes, 4);
                buffer[written] = ZVUTF8::DecodeSequence(bytes, length);
                bytes += length;
            }
        }
        if (*bytes == 0)
            break;
        if (written < room)
            continue;
        ReleaseBuffer(written);
        const size_t left = strlen(reinterpret_cast<const char*>(bytes));
        const size_t larger = room < SecondDecodeLength ? static_cast<size_t>(SecondDecodeLength)
                                                        : static_cast<size_t>(room) + ZVUTF8::CountCharacters(bytes, left);
        if (larger >= INT32_MAX)
            throw std::bad_alloc();
        buffer = GetBuffer(static_cast<int32_t>(larger), true, true);
        room = GetCapacity() - 1;
    }
    ReleaseBuffer(written);
}

void ZVString::SetFromUTF8(const char* text, int32_t count)
{
    const size_t size = text == nullptr || count < 1 ? 0 : strnlen(text, static_cast<size_t>(count));
    const uint8_t* bytes = reinterpret_cast<const uint8_t*>(text);
    const int32_t characters = static_cast<int32_t>(ZVUTF8::CountCharacters(bytes, size));
    if (characters == 0)
    {
        Empty();
        return;
    }
    wchar_t* buffer = GetBuffer(characters, true, false);
    int32_t written = 0;
    for (size_t position = 0; position < size;)
    {
        const size_t plain = ZVUTF8::WidenASCII(bytes + position, size - position, buffer + written);
        position += plain;
        written += static_cast<int32_t>(plain);
        if (position == size)
            break;
        const int32_t length = ZVUTF8::SequenceLength(bytes + position, size - position);
        buffer[written++] = ZVUTF8::DecodeSequence(bytes + position, length);
        position += static_cast<size_t>(length);
    }
    ReleaseBuffer(written);
}

void ZVString::ReinterpretAsUTF8()
{
    const int32_t length = GetLength();
    ZVBuffer bytes;
    bytes.Grow(length);
    for (int32_t index = 0; index < length; ++index)
        bytes.GetData()[index] = static_cast<uint8_t>(m_text[index]);
    SetFromUTF8(reinterpret_cast<const char*>(bytes.GetData()), length);
}

template <class Unit>
void ZVString::SetFromUnits(const void* units, int32_t count, bool honourMark, bool swapped)
{
    int32_t length = 0;
    if (units != nullptr)
        while ((count == -1 || length < count) && LoadUnit<Unit>(units, length) != 0)
            if (++length == INT32_MAX)
                throw std::bad_alloc();
    int32_t first = 0;
    if (honourMark)
    {
        const Unit mark = length > 0 ? LoadUnit<Unit>(units, 0) : Unit {0};
        swapped = mark == SwappedByteOrderMark;
        first = swapped || mark == ByteOrderMark ? 1 : 0;
    }
    if (length == first)
    {
        Empty();
        return;
    }
    wchar_t* buffer = GetBuffer(length - first, true, false);
    for (int32_t index = first; index < length; ++index)
    {
        const Unit unit = LoadUnit<Unit>(units, index);
        buffer[index - first] = static_cast<wchar_t>(swapped ? Swapped(unit) : unit);
    }
    ReleaseBuffer(length - first);
}

void ZVString::SetFromUTF16(const void* units, int32_t count, bool honourMark, bool swapped)
{
    SetFromUnits<uint16_t>(units, count, honourMark, swapped);
}

void ZVString::SetFromUTF32(const void* units, int32_t count, bool honourMark, bool swapped)
{
    SetFromUnits<uint32_t>(units, count, honourMark, swapped);
}

ZVEncoding ZVString::DetectEncoding(const uint8_t* bytes, int32_t count)
{
    if (HasUTF16Mark(bytes, count))
        return ZVEncoding::UTF16;
    if (HasUTF8Mark(bytes, count))
        return ZVEncoding::UTF8WithMark;
    // Zero bytes at the end mean nothing: a text in any encoding may end with them.
    while (count > 0 && bytes[count - 1] == 0)
        --count;
    return EncodingFromSequences(bytes, count);
}

void ZVString::SetFromBytes(ZVBuffer& buffer, ZVEncoding encoding, bool dropNulBytes)
{
    const int64_t used = buffer.GetUsed();
    if (used > INT32_MAX - TerminatorSize)
        throw std::bad_alloc();
    int32_t count = static_cast<int32_t>(used);
    buffer.Grow(used + TerminatorSize);
    uint8_t* bytes = buffer.GetData();
    memset(bytes + count, 0, TerminatorSize);

    if (encoding == ZVEncoding::Detect)
        encoding = DetectEncoding(bytes, count);
    if (encoding == ZVEncoding::UTF16)
    {
        const int32_t units = count / 2;
        SetFromUTF16(bytes, dropNulBytes ? DropZeroUnits<uint16_t>(bytes, units) : units, true);
        return;
    }
    if (encoding == ZVEncoding::UTF32)
    {
        const int32_t units = count / 4;
        SetFromUTF32(bytes, dropNulBytes ? DropZeroUnits<uint32_t>(bytes, units) : units, true);
        return;
    }
    if (dropNulBytes)
        count = DropZeroUnits<uint8_t>(bytes, count);
    const int32_t mark = encoding == ZVEncoding::UTF8WithMark && HasUTF8Mark(bytes, count) ? 3 : 0;
    const char* text = reinterpret_cast<const char*>(bytes) + mark;
    if (encoding == ZVEncoding::UTF8 || encoding == ZVEncoding::UTF8WithMark)
        SetFromUTF8(text, count - mark);
    else
        SetFromNarrow(text, std::max(count, 0));
}

char* ZVString::GetUTF8(int32_t* size) const
{
    return ZVUTF8::EncodeToNewArray(m_text, static_cast<size_t>(GetLength()), size);
}

char* ZVString::GetNarrow(int32_t* size) const
{
    const int32_t length = GetLength();
    char* array = new char[static_cast<size_t>(length) + 1];
    for (int32_t index = 0; index < length; ++index)
    {
        const wchar_t character = m_text[index];
        array[index] = character >= 0 && character < 0x100 ? static_cast<char>(static_cast<unsigned char>(character)) : '?';
    }
    array[length] = '\0';
    if (size != nullptr)
        *size = length;
    return array;
}
