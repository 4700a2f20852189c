#include "RatioReport.h"
#include "core/property/ZVPropertyMap.h"
#include "core/xml/ZVXMLDocument.h"

#include <pugixml.hpp>
#include <string>

namespace
{
constexpr size_t DocumentSize = 1024 * 1024;

// A document as the worker reads and writes them: many small items with an attribute and a text.
std::string Document()
{
    std::string text = "<XMLPH version=\"1.0\">\r\n";
    for (int index = 0; text.size() < DocumentSize; ++index)
        text +=
            "<Item Name=\"Property " + std::to_string(index) + "\">The value of the property, some forty characters</Item>\r\n";
    return text + "</XMLPH>";
}

void ParseDocument(benchmark::State& state)
{
    const ZVString text = ZVString::FromUTF8(Document().c_str());
    for (auto _ : state)
    {
        ZVXMLDocument document;
        if (!document.SetDocument(text))
            state.SkipWithError("the document was refused");
        benchmark::DoNotOptimize(document);
    }
}

// parse_default of the narrow build, from a buffer in memory that the library copies: what a program that keeps its text would call.
void ParsePugixml(benchmark::State& state)
{
    const std::string text = Document();
    for (auto _ : state)
    {
        pugi::xml_document document;
        if (!document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8))
            state.SkipWithError("the document was refused");
        benchmark::DoNotOptimize(document);
    }
}

constexpr int SmallMap = 1000;
constexpr int LargeMap = 10000;

template <int Entries>
void WriteAndReadMap(benchmark::State& state)
{
    ZVPropertyMap map;
    for (int index = 0; index < Entries; ++index)
        map.SetInt(ZVFormat(L"Property %d", index), index);
    ZVString text;
    ZVPropertyMap read;
    for (auto _ : state)
    {
        map.ToXML(text, L"XMLPH", false, 1.0);
        if (!read.FromXML(text, L"XMLPH", 1.0))
            state.SkipWithError("the text was refused");
    }
}

ZV_COMPARE(ParseXML1MB, 3.0, ParseDocument, ParsePugixml, "pugixml");
// Ten times the entries, so anything near ten is linear.
ZV_COMPARE(Map10000To1000, 14.0, WriteAndReadMap<LargeMap>, WriteAndReadMap<SmallMap>, "map of 1000");
}
