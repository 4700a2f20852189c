#pragma once

#include "core/string/ZVFormatArgument.h"
#include "core/string/ZVStringGlobals.h"
#include "core/string/ZVThreading.h"

#include <cstdint>
#include <cwchar>
#include <string_view>

class IZVFileLoaderProgress;
class ZVBuffer;
class ZVString;
class ZVStringArray;
struct ZVStringReplaceHit;

// Characters with their count, as the bulk append takes them. A negative count means up to the NUL; a null pointer is no text.
struct ZVStringPiece
{
    explicit ZVStringPiece(const wchar_t* characters, int32_t count = -1) : Characters(characters), Count(count) {}
    explicit inline ZVStringPiece(const ZVString& text);

    const wchar_t* Characters;
    int32_t Count;
};

// The encoding of a text file.
enum class ZVEncoding : int32_t
{
    Detect = 0,
    Narrow = 1,  // one byte a character, Latin-1
    UTF8 = 2,
    UTF16 = 3,
    UTF8WithMark = 5,  // UTF-8 after a byte-order mark, which is skipped
    UTF32 = 6,
};

// Supplies the replacement for each token of ReplaceTokens.
class IZVStringTokenReplaceCallback
{
public:
    virtual ZVString ReplaceToken(const ZVString& token) = 0;

protected:
    ~IZVStringTokenReplaceCallback() = default;
};

// The string of the whole system: one pointer to NUL-terminated wide characters, with a reference-counted header just before
// them. Copies share the characters, and the first write to a shared block clones it. The pointer is never null. Two strings that
// share a block may be used from two threads; one string may not. Lengths and positions count characters; a position out of range
// finds nothing and changes nothing. Nothing throws except std::bad_alloc.
//
// When caseSensitive is false, both sides are lowered character by character before they are compared.
class ZVString
{
public:
    // --- Life ------------------------------------------------------------------------------------------------------------------

    ZVString() noexcept : m_text(ZVStringGlobals::Get().GetEmpty()) {}
    // Copies a NUL-terminated text; null gives the empty string.
    ZVString(const wchar_t* text) : m_text(ZVStringGlobals::Get().CreateFromWide(text, -1, -1, false, false, true)) {}
    // Copies the first length characters of a text, or fewer if there is a NUL before.
    ZVString(const wchar_t* text, int32_t length)
        : m_text(ZVStringGlobals::Get().CreateFromWide(text, length, -1, false, false, true))
    {
    }
    ZVString(const ZVString& other) : m_text(Share(other)) {}
    ZVString(ZVString&& other);
    ~ZVString() { Release(Data()); }

    // Shares the block of other, or copies it when either string is locked or the two blocks come from different managers. A
    // locked string stays locked, and a string from another library keeps that library's manager.
    ZVString& operator=(const ZVString& other);
    ZVString& operator=(ZVString&& other);
    ZVString& operator=(const wchar_t* text);

    // Makes a string from UTF-8, as SetFromUTF8 reads it; null gives the empty string.
    static ZVString FromUTF8(const char* text);

    // --- Access ----------------------------------------------------------------------------------------------------------------

    operator const wchar_t*() const { return m_text; }
    const wchar_t* GetText() const { return m_text; }
    // The characters for code that only looks. Valid until the string is changed or destroyed.
    std::wstring_view View() const { return {m_text, static_cast<size_t>(GetLength())}; }
    int32_t GetLength() const { return Data()->Length; }
    bool IsEmpty() const { return Data()->Length < 1; }
    // The character at a position, or NUL for a position out of range.
    wchar_t GetAt(int32_t index) const { return index >= 0 && index < GetLength() ? m_text[index] : L'\0'; }
    // How many characters the block can hold, including the terminator.
    int32_t GetCapacity() const { return Data()->Capacity; }
    // Sets the length to 0. A block that is not shared is kept as the string's buffer.
    void Empty();

    // --- Buffer ----------------------------------------------------------------------------------------------------------------

    // Returns the characters as a writable buffer for at least length of them and a terminator; a negative length means the
    // present size. The block is then not shared, and locked until ReleaseBuffer; a second call returns the same buffer. The
    // length does not change, except that a new block without keepContents starts at 0. With exact a new block is as large as
    // asked for; otherwise its size is the next power of two above length, or for large texts a multiple of 0x100000.
    wchar_t* GetBuffer(int32_t length, bool exact = false, bool keepContents = true);
    // Ends the lock and sets the length; -1 measures up to the NUL.
    void ReleaseBuffer(int32_t length = -1);

    // --- Append ----------------------------------------------------------------------------------------------------------------

    // Appends count characters; a negative count means up to the NUL. With a growBlock of 1 or more, a block without room grows
    // to a multiple of growBlock and not to a power of two. A null source only makes room: the string is then unshared and as
    // long as before.
    void Append(const wchar_t* source, int32_t count, int32_t growBlock = 0);
    // Appends another string, or itself. An empty string then shares the other's block.
    void Append(const ZVString& other);
    void Append(const wchar_t* text) { Append(text, -1); }
    void AppendCharacter(wchar_t character) { Append(&character, 1); }
    // Appends bytes, each as the character of that value; a negative count means up to the NUL.
    void AppendNarrow(const char* source, int32_t count = -1);
    // Appends texts, each of which a piece can be made from, after a single look at the capacity.
    template <class... Texts>
    void AppendPieces(const Texts&... texts)
    {
        ZVStringPiece pieces[] = {ZVStringPiece(texts)...};
        AppendPieceList(pieces, pieces + sizeof...(texts));
    }

    ZVString& operator+=(const ZVString& other);
    ZVString& operator+=(const wchar_t* text);
    ZVString& operator+=(wchar_t character);
    friend ZVString operator+(const ZVString& left, const ZVString& right) { return Join(left, right); }
    friend ZVString operator+(const ZVString& left, const wchar_t* right) { return Join(left, right); }
    friend ZVString operator+(const wchar_t* left, const ZVString& right) { return Join(left, right); }

    // --- Conversion ------------------------------------------------------------------------------------------------------------

    // From bytes, each the character of that value. A count of -1 means up to the NUL; any other count ends there too. Null, 0
    // and other negative counts empty the string.
    void SetFromNarrow(const char* text, int32_t count = -1);
    // From NUL-terminated UTF-8. A sequence of four bytes becomes "?", an invalid byte the character of its value.
    void SetFromUTF8(const char* text);
    // From at most count bytes of UTF-8, or fewer if there is a NUL before. The block is exactly as large as the text.
    void SetFromUTF8(const char* text, int32_t count);
    // For a string whose characters are the bytes of a UTF-8 text: decodes them.
    void ReinterpretAsUTF8();
    // From UTF-16 units, each of which becomes one character. A count of -1 means up to a zero unit; any other count ends there
    // too. With honourMark a byte-order mark is skipped and says whether the bytes are swapped; otherwise the argument swapped
    // says so.
    void SetFromUTF16(const void* units, int32_t count, bool honourMark, bool swapped = false);
    // The same from 32-bit units.
    void SetFromUTF32(const void* units, int32_t count, bool honourMark, bool swapped = false);
    // From the bytes of a text file. Eight zero bytes are written after the buffer's used length, which stays as it is. The text
    // ends at the first zero unit; with dropNulBytes all zero units are removed first.
    void SetFromBytes(ZVBuffer& buffer, ZVEncoding encoding, bool dropNulBytes);
    // The encoding that SetFromBytes assumes when it is asked to detect it.
    static ZVEncoding DetectEncoding(const uint8_t* bytes, int32_t count);

    // Returns a new NUL-terminated array in UTF-8, which the caller frees with delete[]. size, if not null, receives the number
    // of bytes without the NUL.
    char* GetUTF8(int32_t* size = nullptr) const;
    // The same with one byte for each character, "?" for those above 255.
    char* GetNarrow(int32_t* size = nullptr) const;

    // --- Compare ---------------------------------------------------------------------------------------------------------------

    bool IsEqual(const wchar_t* text, bool caseSensitive = true) const;
    // Compares as many first characters as text has; the result is that of wcsncmp.
    int32_t CompareStart(const wchar_t* text, bool caseSensitive = true) const;
    // The same with the last characters; -1 if the string is shorter than text.
    int32_t CompareEnd(const wchar_t* text, bool caseSensitive = true) const;
    // False for an empty or null text.
    bool StartsWith(const wchar_t* text, bool caseSensitive = true) const;
    bool EndsWith(const wchar_t* text, bool caseSensitive = true) const;
    bool StartsWith(wchar_t character, bool caseSensitive = true) const;
    bool EndsWith(wchar_t character, bool caseSensitive = true) const;

    friend bool operator==(const ZVString& left, const ZVString& right)
    {
        return left.m_text == right.m_text || wcscmp(left.m_text, right.m_text) == 0;
    }
    friend bool operator==(const ZVString& left, const wchar_t* right) { return left.IsEqual(right); }

    // --- Find: positions, or -1 ------------------------------------------------------------------------------------------------

    int32_t Find(wchar_t character, int32_t start = 0) const;
    // A null text counts as empty; an empty text is found at start.
    int32_t Find(const wchar_t* text, int32_t start = 0) const;
    // Ignores case by the rules of the tools library; without the library nothing is found. With skipMatch the position is the
    // one after the match.
    int32_t FindNoCase(const wchar_t* text, int32_t start = 0, bool skipMatch = false) const;
    int32_t FindLastOf(const wchar_t* text, bool caseSensitive = true) const;
    // The last occurrence at or before start; a start that is negative or too large means the end.
    int32_t ReverseFind(wchar_t character, int32_t start = -1) const;
    // The first or last character that is in a set.
    int32_t FindOneOf(const wchar_t* set, int32_t start = 0) const;
    int32_t ReverseFindOneOf(const wchar_t* set, int32_t start = -1) const;
    // The n-th occurrence, counted from 1, without overlap.
    int32_t FindNth(const wchar_t* text, int32_t n, bool caseSensitive = true) const;
    // How often a text occurs, without overlap.
    int32_t CountOf(const wchar_t* text, bool caseSensitive = true) const;
    // True for 1 to maximumLength characters, each a digit, a comma, a full stop or, in the first place only, a minus sign.
    bool IsNumber(int32_t maximumLength = 32) const;

    // --- Cut -------------------------------------------------------------------------------------------------------------------

    // Removes that many characters from both ends.
    void Trim(int32_t front, int32_t back);
    // The next eight cut the string at the first or last occurrence of a text or character, and keep that with keepFound. They
    // return 1, or 0 if there is no occurrence; the string then stays as it was.
    int32_t TrimFrontTo(const wchar_t* text, bool keepFound);
    int32_t TrimFrontTo(wchar_t character, bool keepFound);
    int32_t TrimFrontToLast(const wchar_t* text, bool keepFound);
    int32_t TrimFrontToLast(wchar_t character, bool keepFound);
    int32_t TrimBackFrom(const wchar_t* text, bool keepFound);
    int32_t TrimBackFrom(wchar_t character, bool keepFound);
    int32_t TrimBackFromLast(const wchar_t* text, bool keepFound);
    int32_t TrimBackFromLast(wchar_t character, bool keepFound);

    // Removes white space, a character, or the characters of a set from the ends.
    void TrimWhitespace();
    void TrimLeft(wchar_t character);
    void TrimRight(wchar_t character);
    void Trim(wchar_t character);
    void TrimLeft(const wchar_t* set);
    void TrimRight(const wchar_t* set);
    void Trim(const wchar_t* set);

    // --- Copy parts ------------------------------------------------------------------------------------------------------------

    ZVString Mid(int32_t start, int32_t count = INT32_MAX) const;
    ZVString Left(int32_t count) const;
    ZVString Right(int32_t count) const;
    // The text before the first character of a set; with includeSeparator that character too.
    ZVString GetBefore(const wchar_t* set, bool keepAllIfNotFound = false, bool includeSeparator = false) const;
    // The text after the last character of a set; with includeSeparator that character too.
    ZVString GetAfterLast(const wchar_t* set, bool keepAllIfNotFound = false, bool includeSeparator = false) const;
    // The text between the first occurrence of before and the next occurrence of after; empty if either is missing.
    ZVString GetBetween(const wchar_t* before, const wchar_t* after) const;

    // --- Edit ------------------------------------------------------------------------------------------------------------------

    // Inserts before a position from 0 to the length.
    void Insert(int32_t position, const wchar_t* text);
    void Insert(int32_t position, wchar_t character);
    void Prepend(const wchar_t* text) { Insert(0, text); }
    // Replaces one character; a NUL ends the string there.
    void SetAt(int32_t index, wchar_t character);
    // Removes all occurrences of a character and returns how many there were.
    int32_t Remove(wchar_t character);
    // Replaces the characters from start up to but not including end. The text may be a part of this string.
    void Replace(int32_t start, int32_t end, ZVStringPiece text);
    void Replace(int32_t start, int32_t end, const wchar_t* text) { Replace(start, end, ZVStringPiece(text)); }
    // Removes ranges, which are sorted by their start and may overlap.
    void Cut(const ZVStringReplaceHit* ranges, int32_t count);
    void MakeUpper();
    void MakeLower();

    // --- Replace: returns the number of hits -----------------------------------------------------------------------------------

    int32_t Replace(const wchar_t* find, const wchar_t* replacement, bool caseSensitive = true);
    // Replaces several needles in one pass and one allocation. The leftmost hit wins; if two start at the same place, the needle
    // that comes first in the list. Replacements are not searched again. With keepMatchedText the match stays, between prefix and
    // suffix. Nothing is done if any needle is null or empty.
    int32_t ReplaceMultiple(const wchar_t* const* needles, const wchar_t* const* replacements, int32_t needleCount,
                            bool caseSensitive = true, int32_t maxHits = INT32_MAX, bool keepMatchedText = false,
                            const wchar_t* prefix = nullptr, const wchar_t* suffix = nullptr);
    // Removes all occurrences of a text.
    int32_t RemoveText(const wchar_t* text, bool caseSensitive = true);
    // Replaces each text between two markers by what the callback returns for it; the markers go too, unless keepMarkers is set.
    // A token begins after the last start marker before its end marker.
    int32_t ReplaceTokens(const wchar_t* startMarker, const wchar_t* endMarker, IZVStringTokenReplaceCallback& callback,
                          bool keepMarkers = false);

    // --- Numbers ---------------------------------------------------------------------------------------------------------------

    // The number at the start of the text, or 0 if there is none: white space, one sign, then decimal digits of any script in
    // ZVDigits. A number that is too large becomes the type's largest value, negated after a minus sign.
    int32_t ToInt() const;
    uint32_t ToUInt() const;
    int64_t ToInt64() const;
    uint64_t ToUInt64() const;
    // The same with hexadecimal digits, with or without "0x" before them.
    uint64_t ToUInt64FromHex() const;
    // The decimal number in the first maxLength characters. The decimal point is the locale's; with anyDecimalPoint both "." and
    // "," are one. Before the point the other of the two is skipped as a separator of groups. consumed, if not null, receives the
    // number of characters read.
    double ToDouble(int32_t* consumed = nullptr, bool anyDecimalPoint = false, int32_t maxLength = INT32_MAX,
                    bool allowExponent = false) const;
    // True for "true", "yes" and numbers that are not zero.
    bool ToBool() const;

    // Numbers as text, with the flags of ZVNumberText.
    static ZVString FromInt(int64_t value, int32_t minimumDigits = 0, int32_t base = 10, uint32_t flags = 0);
    static ZVString FromUInt(uint64_t value, int32_t minimumDigits = 0, int32_t base = 10, uint32_t flags = 0);
    static ZVString FromDouble(double value, int32_t precision = -1, bool fixedPrecision = false, int32_t minimumDigits = 0,
                               uint32_t flags = 0);
    // "0x" and upper-case hexadecimal digits.
    static ZVString ToHexString(uint64_t value);
    // Sixteen upper-case hexadecimal digits.
    static ZVString FromPointer(const void* pointer);
    // An IPv4 address, whose first byte is in the highest eight bits, as "127.0.0.1".
    static ZVString FromIPAddress(uint32_t address);

    // --- Format ----------------------------------------------------------------------------------------------------------------

    // Sets the text to, or appends, a format with at most 20 typed arguments; ZVStringFormat.h lists the conversions. The
    // arguments may be this string itself.
    template <class... Arguments>
    void Format(const wchar_t* format, const Arguments&... arguments)
    {
        const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
        FormatList(format, list.Records(), list.Count());
    }

    template <class... Arguments>
    void AppendFormat(const wchar_t* format, const Arguments&... arguments)
    {
        const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
        AppendFormatList(format, list.Records(), list.Count());
    }

    // The same with arguments in the form in which they cross a library boundary.
    void FormatList(const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count);
    void AppendFormatList(const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count);

    // --- File ------------------------------------------------------------------------------------------------------------------

    // Reads the text of a file or of an internet resource and decodes its bytes as SetFromBytes does. True with the empty string
    // for a null or empty path; false with the empty string for a failure, whose cause is logged. progress follows the load, and
    // the headers go out with an internet request; both may be null.
    bool LoadFromFile(const wchar_t* path, ZVEncoding encoding = ZVEncoding::Detect, bool dropNulBytes = false,
                      IZVFileLoaderProgress* progress = nullptr, const ZVStringArray* requestHeaders = nullptr);

    // Writes the text to a file, which is created or replaced, and creates its folder. Control characters in the path become "_".
    // The modes are 1 one byte for each character, 2 UTF-8, 3 UTF-16 in host order after its mark, 4 the same without the mark, 5
    // UTF-8 after its mark; any other mode does nothing. True if every byte was written; otherwise an old file stays
    // as it was, no new one is left, and the cause is logged.
    bool SaveToFile(const ZVString& path, int32_t mode) const;

    // --- Quote, similarity, serial form ----------------------------------------------------------------------------------------

    // The text as one word of a shell command line.
    ZVString QuoteForShell() const;

    // The Levenshtein distance, ignoring case, or INT_MAX if it exceeds the limit.
    int32_t GetEditDistance(const wchar_t* other, int32_t limit = INT32_MAX) const;
    // True if the distance is at most a quarter of this string's length, and at most three.
    bool IsSimilar(const wchar_t* other) const;

    // Appends "(length:text)".
    void AppendLengthPrefixed(const ZVString& text);
    void AppendLengthPrefixed(int32_t value);
    // Reads the length-prefixed text at position and moves position past it. On failure both arguments stay as they were.
    bool ReadLengthPrefixed(int32_t& position, ZVString& value) const;
    // The same for an integer; returns the default if there is no such text.
    int32_t ReadLengthPrefixedInt(int32_t& position, int32_t defaultValue = 0) const;
    bool IsLengthPrefixed() const;

    // --- XML and HTML text -----------------------------------------------------------------------------------------------------

    // Flags of EscapeXML. The ampersand and both angle brackets are always escaped, and character 1 always becomes "&#x1;".
    static constexpr uint32_t EscapeApostrophes = 4;
    static constexpr uint32_t EscapeQuotationMarks = 8;
    static constexpr uint32_t HandleControlCharacters = 16;   // as "&#x…;", except tab, line feed and carriage return
    static constexpr uint32_t ReplaceControlCharacters = 32;  // with the flag above: as "?" instead
    static constexpr uint32_t EscapeElementText = 50;
    static constexpr uint32_t EscapeAttributeText = 62;
    // Option of GetEscapedXML.
    static constexpr uint32_t ForAttribute = 0x100;

    // Escapes the text in place. Allocates nothing if nothing needs escaping.
    void EscapeXML(uint32_t flags = EscapeElementText);
    // Returns an escaped copy, for element text or, with ForAttribute, for attribute text.
    ZVString GetEscapedXML(uint32_t options = 0) const;
    // Decodes the five named entities of XML and the numeric ones. Everything else that begins with "&" stays, and so does a
    // numeric entity that would be a NUL.
    void DecodeXMLEntities();
    // Decodes the named entities of HTML too.
    void DecodeHTMLEntities();

private:
    ZVStringData* Data() const { return ZVStringData::FromCharacters(m_text); }
    static wchar_t* Share(const ZVString& other);
    static void Release(ZVStringData* block) noexcept;
    static bool IsLocked(const ZVStringData* block)
    {
        return block->RefCount.load(std::memory_order_relaxed) == ZVStringData::LockedCount;
    }
    static bool IsShared(const ZVStringData* block) { return block->RefCount.load(std::memory_order_relaxed) > 1; }

    template <class Left, class Right>
    static ZVString Join(const Left& left, const Right& right)
    {
        ZVString joined;
        joined.AppendPieces(left, right);
        return joined;
    }

    void AppendPieceList(ZVStringPiece* first, ZVStringPiece* end);
    void TakeLocked(wchar_t* characters);
    bool IsOwnText(const wchar_t* text) const { return text >= m_text && text < m_text + GetCapacity(); }
    void KeepRange(int32_t start, int32_t end);
    bool RefersTo(const ZVFormatRecord& argument) const;
    void DecodeUTF8Rest(const char* rest, int32_t written);
    template <class Unit>
    void SetFromUnits(const void* units, int32_t count, bool honourMark, bool swapped);

    wchar_t* m_text;
};

static_assert(sizeof(ZVString) == sizeof(void*));

inline ZVStringPiece::ZVStringPiece(const ZVString& text) : Characters(text.GetText()), Count(text.GetLength()) {}

// Returns a format filled with at most 20 typed arguments.
template <class... Arguments>
ZVString ZVFormat(const wchar_t* format, const Arguments&... arguments)
{
    ZVString text;
    text.AppendFormat(format, arguments...);
    return text;
}

inline void ZVString::Release(ZVStringData* block) noexcept
{
    const int32_t count = block->RefCount.load(std::memory_order_relaxed);
    if (count == ZVStringData::ImmortalCount)
        return;
    if (count != ZVStringData::LockedCount && ZVAtomicDecrement(block->RefCount) > 0)
        return;
    block->Manager->FreeData(block);
}

inline wchar_t* ZVString::Share(const ZVString& other)
{
    ZVStringData* block = other.Data();
    ZVStringGlobals& globals = ZVStringGlobals::Get();
    if (block->Length < 1)
        return globals.GetEmpty();
    if (IsLocked(block) || block->Manager != &globals)
        return globals.CreateFromWide(other.m_text, block->Length, -1, false, false, true);
    ZVAtomicIncrement(block->RefCount);
    return other.m_text;
}
