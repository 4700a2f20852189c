#include "core/string/StringProbe.h"

// The cases stand in columns.
// clang-format off

namespace
{
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
