// Reads any text as an XML document, walks through all of it and changes it. The input is UTF-8 up to a NUL, then one byte for
// the flags of the document and one byte for each step among and each change of the elements.

#include "core/xml/ZVXMLDocument.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace
{
void Require(bool condition)
{
    if (!condition)
        abort();
}

// Every element with what can be read of it, in an order that tells the tree. Does not recurse.
ZVString Outline(ZVXMLDocument& document)
{
    ZVString outline;
    document.ResetPosition();
    for (;;)
    {
        if (document.FindElement())
        {
            outline.AppendFormat(L"<%s|%s|%s|%s", document.GetElementName(), document.GetText(), document.GetAttribute(L"x"),
                                 document.GetAttribute(L"Name"));
            Require(document.EnterElement());
            continue;
        }
        outline.AppendCharacter(L'>');
        if (!document.LeaveElement())
            break;
    }
    document.ResetPosition();
    return outline;
}

// Paths and node searches take time for each sibling, so only the first elements of the document are asked for them.
void ReadAroundElements(ZVXMLDocument& document)
{
    constexpr int32_t MaximumElements = 64;
    document.ResetPosition();
    for (int32_t element = 0; element < MaximumElements; ++element)
    {
        if (document.FindElement())
        {
            const ZVString path = document.GetElementPath();
            if (document.FindElement(path))
                Require(document.GetElementPath() == path);
            document.FindChildElement(document.GetElementName());
            document.GetChildText();
            document.GetChildAttribute(L"x");
            Require(document.EnterElement());
            while (document.FindNode(2 | 4 | 8 | 16 | 32 | 64 | 128) != ZVXMLNodeType::EndOfText)
                document.GetText();
            document.ResetMainPosition();
        }
        else if (!document.LeaveElement())
        {
            break;
        }
    }
    document.ResetPosition();
}

void Change(ZVXMLDocument& document, uint8_t step)
{
    constexpr uint32_t AddFlags[] = {0, 1, 2, 4, 0x10, 0x2000, 0x4000, 0x6003};
    constexpr const wchar_t* Values[] = {L"", L"<]]>\"'", L" ", L"text"};
    const uint32_t operand = step >> 4;
    const ZVString value = Values[operand % std::size(Values)];
    switch (step & 15)
    {
    case 0:
        document.FindElement();
        break;
    case 1:
        document.EnterElement();
        break;
    case 2:
        document.LeaveElement();
        break;
    case 3:
        document.FindChildElement();
        break;
    case 4:
        document.ResetPosition();
        break;
    case 5:
        if (document.SetAttribute(L"x", value))
            Require(document.GetAttribute(L"x") == value);
        break;
    case 6:
        document.SetChildAttribute(L"Name", value);
        break;
    case 7:
        if (document.SetText(value, operand < 4))
            Require(document.GetText() == value);
        break;
    case 8:
        document.SetChildText(value, operand < 4);
        break;
    case 9:
        document.RemoveElement();
        break;
    case 10:
        document.RemoveChildElement();
        break;
    case 11:
        document.FindNode(static_cast<int32_t>(operand) * 8 + 7);
        break;
    case 12:
        document.SavePosition(value);
        break;
    case 13:
        document.RestorePosition(value);
        break;
    default:
        document.AddElement(L"x", value, AddFlags[operand % std::size(AddFlags)]);
        break;
    }
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

    // The documents are used for all inputs: to set up the index anew takes longer than most inputs do, and nothing of the one
    // before may be left.
    static ZVXMLDocument documents[] = {ZVXMLDocument(0), ZVXMLDocument(ZVXMLDocument::FoldNames)};
    static ZVXMLDocument readAgain[] = {ZVXMLDocument(0), ZVXMLDocument(ZVXMLDocument::FoldNames)};
    const size_t kind = stepCount > 0 && (steps[0] & ZVXMLDocument::FoldNames) != 0 ? 1 : 0;
    ZVXMLDocument& document = documents[kind];
    ZVXMLDocument& again = readAgain[kind];

    const bool isWellFormed = document.SetDocument(text);
    Require(isWellFormed == document.GetError().IsEmpty() && isWellFormed == document.IsWellFormed());
    ZVXMLDocument::GetEncoding(text);
    ReadAroundElements(document);
    const ZVString before = Outline(document);

    for (size_t index = 1; index < stepCount && index <= MaximumSteps; ++index)
        Change(document, steps[index]);
    const ZVString after = Outline(document);
    again.SetDocument(document.GetDocument());
    // Damage can look different to a new parse; without it the moved index must be what a new parse makes.
    Require(!isWellFormed || Outline(again) == after);
    again.SetDocument(text);
    Require(Outline(again) == before);
    return 0;
}
