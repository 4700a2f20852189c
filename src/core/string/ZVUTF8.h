#pragma once

#include <cstddef>
#include <cstdint>

// UTF-8 as the product reads and writes it: the basic multilingual plane, with everything else kept apart by fixed rules. Nothing
// here looks at the locale.
namespace ZVUTF8
{
// What a sequence of four bytes becomes: characters above U+FFFF are not carried.
inline constexpr wchar_t Replacement = L'?';

// Bytes of the sequence that begins at bytes, of which available can be read: 1 for ASCII and for a byte that begins no valid
// sequence. A NUL-terminated text may be read with an available of 4, since no byte behind the NUL is looked at.
int32_t SequenceLength(const uint8_t* bytes, size_t available);

// The character of a sequence of that length.
wchar_t DecodeSequence(const uint8_t* bytes, int32_t length);

// Copies ASCII bytes as characters until count is reached or another byte comes, and tells how many.
size_t WidenASCII(const uint8_t* bytes, size_t count, wchar_t* target);

// The characters that count bytes decode to.
size_t CountCharacters(const uint8_t* bytes, size_t count);

// The bytes that length characters are written with. Up to U+FFFF the encoding is the standard one; above it the lead byte holds
// the character shifted by 16 where the standard shifts by 18, which the product's files have always had.
size_t EncodedSize(const wchar_t* text, size_t length);

// Writes the characters and tells the end of what was written; target has room for EncodedSize bytes.
char* Encode(const wchar_t* text, size_t length, char* target);

// A new NUL-terminated array with the characters in UTF-8, to be freed with delete[]. Null gives null.
char* EncodeToNewArray(const wchar_t* text, size_t length, int32_t* size = nullptr);
}
