#pragma once

#include <cstddef>
#include <cstdint>

// UTF-8 as the product reads and writes it: the basic multilingual plane, with fixed rules for everything else. Nothing here
// depends on the locale.
namespace ZVUTF8
{
// A sequence of four bytes becomes this: characters above U+FFFF are not supported.
inline constexpr wchar_t Replacement = L'?';

// The length of the sequence that begins at bytes, of which available can be read: 1 for ASCII and for a byte that does not begin
// a valid sequence. For a NUL-terminated text available may be 4, since no byte after the NUL is read.
int32_t SequenceLength(const uint8_t* bytes, size_t available);

// The character of a sequence of that length.
wchar_t DecodeSequence(const uint8_t* bytes, int32_t length);

// Copies ASCII bytes as characters, up to count or up to the first byte that is not ASCII. Returns how many were copied.
size_t WidenASCII(const uint8_t* bytes, size_t count, wchar_t* target);

// The number of characters that count bytes decode to.
size_t CountCharacters(const uint8_t* bytes, size_t count);

// The number of bytes that length characters are encoded in. Up to U+FFFF the encoding is the standard one; above it the lead
// byte holds the character shifted by 16, not by 18 as the standard has it. The product's files have always been written like
// that.
size_t EncodedSize(const wchar_t* text, size_t length);

// Writes the characters and returns the end of what was written; target must have room for EncodedSize bytes.
char* Encode(const wchar_t* text, size_t length, char* target);

// Returns the characters as a new NUL-terminated array in UTF-8, which the caller frees with delete[]; null for a null text.
// size, if not null, receives the number of bytes without the NUL.
char* EncodeToNewArray(const wchar_t* text, size_t length, int32_t* size = nullptr);
}
