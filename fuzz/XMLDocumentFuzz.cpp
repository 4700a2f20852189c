// Reads any text as an XML document, walks through all of it and changes it. The input is UTF-8 up to a NUL, then one byte for
// the flags of the document and one byte for each step among and each change of the elements.

#include "Require.h"
#include "core/xml/ZVXMLDocument.h"

#include <cstdint>
#include <cstring>
#include <iterator>

namespace
{
// Every element with everything that can be read about it, in an order that shows the tree. Does not recurse. Paths and searches
// for nodes take time for each sibling, so they are only used for the first elements.
ZVString Outline(ZVXMLDocument& document)
{
    constexpr int32_t MaximumElements = 64;
    ZVString outline;
    document.ResetPosition();
    for (int32_t element = 0;;)
    {
        if (!document.FindElement())
        {
            outline.AppendCharacter(L'>');
            if (!document.LeaveElement())
                break;
            continue;
        }
        outline.AppendFormat(L"<%s|%s|%s|%s", document.GetElementName(), document.GetText(), document.GetAttribute(L"x"),
                             document.GetAttribute(L"Name"));
        const bool isEarly = element++ < MaximumElements;
        const ZVString path = isEarly ? document.GetElementPath() : ZVString();
        if (isEarly && document.FindElement(path))
            Require(document.GetElementPath() == path);
        if (isEarly && document.FindChildElement(document.GetElementName()))
            outline.AppendFormat(L"|%s|%s", document.GetChildText(), document.GetChildAttribute(L"x"));
        Require(document.EnterElement());
        while (isEarly && document.FindNode(254) != ZVXMLNodeType::EndOfText)
            document.GetText();
        document.ResetMainPosition();
    }
    document.ResetPosition();
    return outline;
}

void Change(ZVXMLDocument& document, uint8_t step)
{
    constexpr uint32_t AddFlags[] = {0, 1, 2, 4, 0x10, 0x2000, 0x4000, 0x6003};
    constexpr const wchar_t* Values[] = {L"", L"<]]>\"'", L" ", L"text"};
    const uint32_t operand = step >> 4;
    const ZVString value = Values[operand % std::size(Values)];
    // clang-format off
    switch (step & 15)
    {
    case 0: document.FindElement(); break;
    case 1: document.EnterElement(); break;
    case 2: document.LeaveElement(); break;
    case 3: document.FindChildElement(); break;
    case 4: document.ResetPosition(); break;
    case 5: Require(!document.SetAttribute(L"x", value) || document.GetAttribute(L"x") == value); break;
    case 6: document.SetChildAttribute(L"Name", value); break;
    case 7: Require(!document.SetText(value, operand < 4) || document.GetText() == value); break;
    case 8: document.SetChildText(value, operand < 4); break;
    case 9: document.RemoveElement(); break;
    case 10: document.RemoveChildElement(); break;
    case 11: document.FindNode(static_cast<int32_t>(operand) * 8 + 7); break;
    case 12: document.SavePosition(value); break;
    case 13: document.RestorePosition(value); break;
    default: document.AddElement(L"x", value, AddFlags[operand % std::size(AddFlags)]); break;
    }
    // clang-format on
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr size_t MaximumSteps = 64;
    const size_t textSize = strnlen(reinterpret_cast<const char*>(data), size);
    ZVString text;
    text.SetFromUTF8(reinterpret_cast<const char*>(data), static_cast<int32_t>(textSize));
    const uint8_t* steps = data + textSize + 1;
    const size_t stepCount = size > textSize ? size - textSize - 1 : 0;

    // The documents are used for all inputs: making a new index takes longer than most inputs, and this shows whether anything of
    // the previous input is left.
    constexpr uint32_t Fold = ZVXMLDocument::FoldNames;
    static ZVXMLDocument documents[][2] = {
        {ZVXMLDocument(0),    ZVXMLDocument(0)   },
        {ZVXMLDocument(Fold), ZVXMLDocument(Fold)}
    };
    auto& [document, again] = documents[stepCount > 0 && (steps[0] & Fold) != 0 ? 1 : 0];

    const bool isWellFormed = document.SetDocument(text);
    Require(isWellFormed == document.GetError().IsEmpty());
    Require(isWellFormed == document.IsWellFormed());
    ZVXMLDocument::GetEncoding(text);
    const ZVString before = Outline(document);

    for (size_t index = 1; index < stepCount && index <= MaximumSteps; ++index)
        Change(document, steps[index]);
    const ZVString after = Outline(document);
    again.SetDocument(document.GetDocument());
    // A new parse may read damage differently. Without damage the updated index must be the same as that of a new parse.
    Require(!isWellFormed || Outline(again) == after);
    again.SetDocument(text);
    Require(Outline(again) == before);
    return 0;
}
