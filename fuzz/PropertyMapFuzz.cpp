// Reads any text as the XMLPH form and as the length-prefixed form of a property map, then writes and reads the result again.

#include "Require.h"
#include "core/property/ZVPropertyMap.h"

#include <cstdint>

namespace
{
constexpr const wchar_t* Root = L"XMLPH";

void WriteAndReadBack(const ZVPropertyMap& map)
{
    ZVString text;
    map.Save(text);
    ZVPropertyMap loaded, first, second;
    int32_t position = 0;
    Require(loaded.Load(text, position));
    Require(position == text.GetLength());
    Require(loaded.IsEqual(map));

    // The first time control characters are replaced; after that nothing may change any more.
    map.ToXML(text, Root, false, 1.0);
    Require(first.FromXML(text, Root, 1.0));
    Require(first.GetCount() <= map.GetCount());
    first.ToXML(text, Root, true, 1.0);
    Require(second.FromXML(text, Root, 1.0));
    Require(second.IsEqual(first));
    second.ToDisplayText(text);
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ZVString text;
    text.SetFromUTF8(reinterpret_cast<const char*>(data), static_cast<int32_t>(size));
    ZVPropertyMap map;
    Require(map.FromXML(text, Root, 1.0) || map.GetCount() == 0);
    WriteAndReadBack(map);
    for (int32_t position = 0, start = -1; position < text.GetLength() && position != start;)
    {
        start = position;
        map.Load(text, position);
        WriteAndReadBack(map);
    }
    return 0;
}
