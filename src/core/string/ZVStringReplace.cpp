// ZVString: replacing texts and tokens.

#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/containers/ZVArray.h"
#include "core/string/ZVString.h"
#include "core/string/ZVStringReplaceHit.h"
#include "core/string/ZVWideText.h"

#include <algorithm>
#include <new>

namespace
{
// One needle of a pass, with its replacement and its next match.
struct Needle
{
    const wchar_t* Text;
    const wchar_t* Replacement;
    int32_t Length;
    int32_t ReplacementLength;
    int32_t Next;  // the first match after the last search, -1 if there is none
};

struct NeedleHit
{
    int32_t Needle;
    int32_t Position;
};

using NeedleArray = ZVArray<Needle, const Needle&, false>;
using NeedleHitArray = ZVArray<NeedleHit, const NeedleHit&, false>;
using ReplaceHitArray = ZVArray<ZVStringReplaceHit, const ZVStringReplaceHit&, false>;

// Without the tools library or its search, a search that should ignore case is exact.
int32_t FindNext(const ZVString& text, const wchar_t* needle, int32_t start, bool caseSensitive)
{
    const bool ignoresCase = !caseSensitive && g_pZVTools != nullptr && g_pZVTools->GetTools(false) != nullptr;
    return ignoresCase ? text.FindNoCase(needle, start) : text.Find(needle, start);
}

// Adds to an array and doubles its capacity when it is full: large arrays otherwise grow by a fixed step, and a text full of hits
// would take quadratic time.
template <class Array, class Element>
void AddDoubling(Array& array, const Element& element)
{
    if (array.GetCount() == array.GetCapacity())
        array.Reserve(static_cast<int32_t>(std::min<int64_t>(2 * static_cast<int64_t>(array.GetCount()), INT32_MAX)));
    array.Add(element);
}

// The index of the needle that matches first from position on, or -1 if there is no match left. If two match at the same place,
// the one that comes first in the list.
int32_t FindNearestNeedle(const ZVString& text, NeedleArray& needles, int32_t position, bool caseSensitive)
{
    int32_t nearest = -1;
    for (int32_t index = 0; index < needles.GetCount(); ++index)
    {
        Needle& needle = needles[index];
        // A match that still lies ahead is kept; only a match that was passed is searched again, so the pass takes linear time.
        if (needle.Next != -1 && needle.Next < position)
            needle.Next = FindNext(text, needle.Text, position, caseSensitive);
        if (needle.Next != -1 && (nearest == -1 || needle.Next < needles[nearest].Next))
            nearest = index;
    }
    return nearest;
}

// Writes a new text piece by piece into a buffer that is known to be large enough.
class PieceWriter
{
public:
    explicit PieceWriter(wchar_t* target) : m_target(target) {}

    void Write(const wchar_t* text, int32_t count)
    {
        if (count < 1)
            return;
        wmemcpy(m_target, text, static_cast<size_t>(count));
        m_target += count;
    }

private:
    wchar_t* m_target;
};
}

int32_t ZVString::Replace(const wchar_t* find, const wchar_t* replacement, bool caseSensitive)
{
    return ReplaceMultiple(&find, &replacement, 1, caseSensitive);
}

int32_t ZVString::ReplaceMultiple(const wchar_t* const* needles, const wchar_t* const* replacements, int32_t needleCount,
                                  bool caseSensitive, int32_t maxHits, bool keepMatchedText, const wchar_t* prefix,
                                  const wchar_t* suffix)
{
    if (needleCount < 1 || maxHits < 1)
        return 0;
    NeedleArray list;
    for (int32_t index = 0; index < needleCount; ++index)
    {
        if (ZVWideText::LengthOf(needles[index]) == 0)
            return 0;
        const wchar_t* replacement = keepMatchedText || replacements == nullptr ? nullptr : replacements[index];
        list.Add({needles[index], replacement, ZVWideText::LengthOf(needles[index]), ZVWideText::LengthOf(replacement),
                  FindNext(*this, needles[index], 0, caseSensitive)});
    }

    const int32_t prefixLength = ZVWideText::LengthOf(prefix);
    const int32_t suffixLength = ZVWideText::LengthOf(suffix);
    NeedleHitArray hits;
    int64_t newLength = GetLength();
    int32_t position = 0;
    while (hits.GetCount() < maxHits)
    {
        const int32_t nearest = FindNearestNeedle(*this, list, position, caseSensitive);
        if (nearest == -1)
            break;
        const Needle& needle = list[nearest];
        AddDoubling(hits, NeedleHit {nearest, needle.Next});
        position = needle.Next + needle.Length;
        newLength += prefixLength + suffixLength + (keepMatchedText ? 0 : needle.ReplacementLength - needle.Length);
    }
    if (hits.GetCount() == 0)
        return 0;
    if (newLength >= INT32_MAX)
        throw std::bad_alloc();

    ZVString result;
    PieceWriter writer(result.GetBuffer(static_cast<int32_t>(newLength), true, false));
    position = 0;
    for (int32_t index = 0; index < hits.GetCount(); ++index)
    {
        const NeedleHit& hit = hits[index];
        const Needle& needle = list[hit.Needle];
        writer.Write(m_text + position, hit.Position - position);
        writer.Write(prefix, prefixLength);
        if (keepMatchedText)
            writer.Write(m_text + hit.Position, needle.Length);
        else
            writer.Write(needle.Replacement, needle.ReplacementLength);
        writer.Write(suffix, suffixLength);
        position = hit.Position + needle.Length;
    }
    writer.Write(m_text + position, GetLength() - position);
    result.ReleaseBuffer(static_cast<int32_t>(newLength));
    *this = result;
    return hits.GetCount();
}

int32_t ZVString::RemoveText(const wchar_t* text, bool caseSensitive)
{
    const int32_t length = ZVWideText::LengthOf(text);
    if (length == 0)
        return 0;
    ReplaceHitArray hits;
    for (int32_t found = FindNext(*this, text, 0, caseSensitive); found != -1;
         found = FindNext(*this, text, found + length, caseSensitive))
        AddDoubling(hits, ZVStringReplaceHit {found, found + length});
    if (hits.GetCount() > 0)
        Cut(&hits[0], hits.GetCount());
    return hits.GetCount();
}

int32_t ZVString::ReplaceTokens(const wchar_t* startMarker, const wchar_t* endMarker, IZVStringTokenReplaceCallback& callback,
                                bool keepMarkers)
{
    const int32_t startLength = ZVWideText::LengthOf(startMarker);
    const int32_t endLength = ZVWideText::LengthOf(endMarker);
    if (startLength == 0 || endLength == 0)
        return 0;
    ZVString result;
    int32_t count = 0;
    int32_t position = 0;
    while (true)
    {
        int32_t start = Find(startMarker, position);
        const int32_t end = start == -1 ? -1 : Find(endMarker, start + startLength);
        if (end == -1)
            break;
        for (int32_t later = start; later != -1 && later + startLength <= end; later = Find(startMarker, later + 1))
            start = later;
        const int32_t tokenStart = start + startLength;
        const ZVString replacement = callback.ReplaceToken(Mid(tokenStart, end - tokenStart));
        result.AppendPieces(ZVStringPiece(m_text + position, (keepMarkers ? tokenStart : start) - position), replacement,
                            ZVStringPiece(m_text + end, keepMarkers ? endLength : 0));
        position = end + endLength;
        ++count;
    }
    if (count == 0)
        return 0;
    result.Append(m_text + position, GetLength() - position);
    *this = result;
    return count;
}
