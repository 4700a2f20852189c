#include "core/string/StringProbe.h"

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVStringEscape, EscapeXML)
{
    constexpr uint32_t Apostrophes = 4, Controls = 16, Replace = 32;
    const auto escaped = [](const wchar_t* start, uint32_t flags)
    { return Edited(start, [flags](ZVString& text) { text.EscapeXML(flags); }); };
    ExpectTexts({
        {escaped(L"<a &amp; b>", 0), L"&lt;a &amp;amp; b&gt;"}, {escaped(L"'\"&", Controls), L"'\"&amp;"},
        {escaped(L"'\"", Apostrophes), L"&apos;\""}, {ZVString(L"\x2'\"<").GetEscapedXML(0x100), L"?&apos;&quot;&lt;"},
        {escaped(L"\x2\x1f", Controls), L"&#x2;&#x1f;"}, {escaped(L"\x2-\x1f", Controls | Replace), L"?-?"},
        {escaped(L"\t\n\r ", Controls | Replace), L"\t\n\r "},
        {escaped(L"\x1", 0), L"&#x1;"}, {escaped(L"\x1\x2", Controls | Replace), L"&#x1;?"},  // 1 is never replaced
    });
    const ZVString plain(L"nothing to do");
    EXPECT_EQ(plain.GetEscapedXML().GetText(), plain.GetText());
}

TEST(ZVStringEscape, DecodeEntities)
{
    const auto decoded = [](const wchar_t* text)
    {
        const std::wstring xml = TextOf(Edited(text, [](ZVString& own) { own.DecodeXMLEntities(); }));
        const std::wstring html = TextOf(Edited(text, [](ZVString& own) { own.DecodeHTMLEntities(); }));
        return html == xml ? xml : xml + L"|" + html;
    };
    ExpectRows<const wchar_t*, std::wstring>({
        {L"&amp;&lt;&gt;&quot;&apos;", L"&<>\"'"}, {L"&amp;lt;", L"&lt;"}, {L"&#65;&#x20aC;&#X41;", L"A\u20acA"},
        {L"&AMP;&auml;&Auml;&rsquo;&yacute;", L"&AMP;&auml;&Auml;&rsquo;&yacute;|&AMP;\u00e4\u00c4\u2019\u00fd"},
    }, decoded);
    for (const wchar_t* same : {L"&foo;&am;&;&amplifier;", L"&#0;&#x0;&#00000;", L"&#-65;&#x-41;", L"&#;&#x;&#65a;&#x4g;"})
        EXPECT_EQ(decoded(same), same);
}
}
