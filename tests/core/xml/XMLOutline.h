#pragma once

#include "core/xml/ZVXMLDocument.h"

#include <string>

// What a walk through a whole document sees: each element as its name, "[x]" with the value of the attribute x, "=text" and, in
// brackets, what is below it. The walk does not recurse, so it is good for any depth. The position is at the start afterwards.
inline std::wstring XMLOutline(ZVXMLDocument& document)
{
    std::wstring outline;
    document.ResetPosition();
    for (bool isFirst = true;;)
    {
        if (document.FindElement())
        {
            outline += isFirst ? L"" : L",";
            outline += document.GetElementName();
            if (const ZVString attribute = document.GetAttribute(L"x"); !attribute.IsEmpty())
                outline += L"[" + std::wstring(attribute) + L"]";
            if (const ZVString text = document.GetText(); !text.IsEmpty())
                outline += L"=" + std::wstring(text);
            isFirst = document.FindChildElement();
            document.ResetChildPosition();
            document.EnterElement();
            outline += isFirst ? L"(" : L"";
            isFirst = true;
            continue;
        }
        const bool hasElements = !isFirst;
        if (!document.LeaveElement())
            break;
        outline += hasElements ? L")" : L"";
        isFirst = false;
    }
    document.ResetPosition();
    return outline;
}
