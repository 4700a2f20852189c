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

    const EmptyPool pool;
    ZVString text((std::wstring(99, L'x') + L"&").c_str());
    text.EscapeXML();
    EXPECT_EQ(text.GetCapacity(), 111) << "110 percent of the length";
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
        {L"&AMP;&auml;&Auml;", L"&AMP;&auml;&Auml;|&AMP;\u00e4\u00c4"},
    }, decoded);
    for (const wchar_t* same : {L"&foo;&am;&;&amplifier;", L"&#0;&#x0;&#00000;", L"&#-65;&#x-41;", L"&#;&#x;&#65a;&#x4g;"})
        EXPECT_EQ(decoded(same), same);

    ZVString text(L"&not;&reg;&shy;&yen;&auml;&apos;&Auml;&copy;&Euml;&euml;&Iuml;&iuml;&macr;&nbsp;&ordf;&ordm;&Ouml;&ouml;"
                  L"&para;&quot;&sect;&sup1;&sup2;&sup3;&Uuml;&uuml;&yuml;&ndash;&mdash;&iexcl;&pound;&rsquo;&Acirc;&acirc;"
                  L"&AElig;&aelig;&Aring;&aring;&Ecirc;&ecirc;&Icirc;&icirc;&laquo;&micro;&Ocirc;&ocirc;&raquo;&szlig;&THORN;"
                  L"&thorn;&times;&Ucirc;&ucirc;&Aacute;&aacute;&Agrave;&agrave;&Atilde;&atilde;&brvbar;&Ccedil;&ccedil;&curren;"
                  L"&divide;&Eacute;&eacute;&Egrave;&egrave;&frac14;&frac12;&frac34;&hellip;&Iacute;&iacute;&Igrave;&igrave;"
                  L"&iquest;&middot;&Ntilde;&ntilde;&plusmn;&Oacute;&oacute;&Ograve;&ograve;&Oslash;&oslash;&Otilde;&otilde;"
                  L"&Uacute;&uacute;&Ugrave;&ugrave;&Yacute;&yacute;");
    text.DecodeHTMLEntities();
    EXPECT_EQ(TextOf(text), L"¬®\u00ad¥ä'Ä©ËëÏï\u00af\u00a0ªºÖö¶\"§¹²³Üüÿ\u2013\u2014¡£’ÂâÆæÅåÊêÎî«\u00b5Ôô»ßÞþ×ÛûÁáÀàÃã¦Çç¤÷"
                            L"ÉéÈè¼½¾…ÍíÌì¿·Ññ±ÓóÒòØøÕõÚúÙùÝý");
}
}
