// What kind of thing a text names.

#include "system/filename/ZVFilename.h"

namespace
{
constexpr wchar_t SchemeMark[] = L"://";
constexpr wchar_t WebServiceMark[] = L"LDWS";

struct SchemeCode
{
    const wchar_t* Start;
    int32_t Code;
};

constexpr SchemeCode SchemeCodes[] = {
    {L"https", ZVFilename::HTTPSScheme},
    {L"http",  ZVFilename::HTTPScheme },
    {L"ftp",   ZVFilename::FTPScheme  },
};

constexpr const wchar_t* RTMPStarts[] = {L"rtmp://", L"rtmps://", L"rtmpe://", L"rtmpt://"};

// Entries of the library that are no files, told by a part of their text, or by its start with case folded. The last start is
// that of an internet radio entry, as its provider's list writes it.
constexpr const wchar_t* SpecialParts[] = {L".tvlb", L".zvtv", L".tvgd"};
constexpr const wchar_t* SpecialStarts[] = {L"<XMLPH version=", L"Radio Paradise: "};

// A handle that stands for a file: "(0x", eight characters, "):", and the file's name.
constexpr wchar_t HandleStart[] = L"(0x";
constexpr int32_t HandleMinimumLength = 14;
constexpr int32_t HandleEndPosition = 11;

template <size_t Count>
bool StartsWithAny(const ZVString& text, const wchar_t* const (&starts)[Count])
{
    for (const wchar_t* start : starts)
        if (text.StartsWith(start, false))
            return true;
    return false;
}

bool IsHandle(const ZVString& text)
{
    return text.GetLength() >= HandleMinimumLength && text.StartsWith(HandleStart) && text[HandleEndPosition] == L')' &&
           text[HandleEndPosition + 1] == L':';
}
}

bool ZVFilename::IsRemote(const ZVString& text)
{
    return text.Find(SchemeMark) != -1;
}

bool ZVFilename::IsRTMP() const
{
    return StartsWithAny(m_path, RTMPStarts);
}

bool ZVFilename::IsWebServiceURL() const
{
    // FindNoCase would find nothing without the tools library.
    return GetIsFileRemote() && m_path.FindLastOf(WebServiceMark, false) != -1;
}

int32_t ZVFilename::GetSchemeCode() const
{
    for (const SchemeCode& scheme : SchemeCodes)
        if (m_path.StartsWith(scheme.Start, false))
            return scheme.Code;
    return NoScheme;
}

bool ZVFilename::IsSpecial(const ZVString& text)
{
    for (const wchar_t* part : SpecialParts)
        if (text.Find(part) != -1)
            return true;
    return text.IsLengthPrefixed() || StartsWithAny(text, SpecialStarts);
}

bool ZVFilename::IsSpecialFileName(const ZVString& text, const Allowed& allowed)
{
    if (text.IsEmpty())
        return allowed.Empty;
    if (allowed.HandleForm && IsHandle(text))
        return true;
    if (IsRemote(text) && !allowed.URL)
        return false;
    return allowed.Special || !IsSpecial(text);
}
