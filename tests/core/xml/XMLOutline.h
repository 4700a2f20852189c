#pragma once

#include "core/Rows.h"
#include "core/xml/ZVXMLDocument.h"

#include <string>

// What a walk through a whole document finds: each element as its name, the value of the attribute x in square brackets, "=text"
// and, in round brackets, the elements inside it. The walk does not recurse, so any depth works. It ends at the start.
inline std::wstring XMLOutline(ZVXMLDocument& document)
{
    std::wstring outline;
    document.ResetPosition();
    for (bool isFirst = true;;)
    {
        if (document.FindElement())
        {
            const ZVString attribute = document.GetAttribute(L"x"), text = document.GetText();
            outline += isFirst ? L"" : L",";
            outline += document.GetElementName() + (attribute.IsEmpty() ? ZVString() : L"[" + attribute + L"]");
            outline += text.IsEmpty() ? ZVString() : L"=" + text;
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
