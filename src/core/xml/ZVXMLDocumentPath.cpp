#include "core/xml/ZVXMLDocument.h"

#include "core/containers/ZVNumberArray.h"
#include "core/xml/ZVXMLText.h"

#include <algorithm>

// One step of a path: a name and, if not 0, the index among the siblings of that name.
struct ZVXMLDocument::PathStep
{
    // Reads a step and moves path to the "/" or the NUL after it. False if it is not a step.
    bool Read(const wchar_t*& path);

    const wchar_t* Name = nullptr;
    int32_t Length = 0;
    int32_t Index = 0;
};

bool ZVXMLDocument::PathStep::Read(const wchar_t*& path)
{
    Name = path;
    Length = static_cast<int32_t>(wcscspn(path, L" =/[]"));
    Index = 0;
    path += Length;
    if (*path == L'[')
    {
        // No document has INT32_MAX elements, so that can stand for any larger index.
        int64_t index = 0;
        for (++path; *path >= L'0' && *path <= L'9'; ++path)
            index = std::min<int64_t>(index * 10 + (*path - L'0'), INT32_MAX);
        if (*path != L']' || index == 0)
            return false;
        ++path;
        Index = static_cast<int32_t>(index);
    }
    return Length > 0 && (*path == L'/' || *path == L'\0');
}

uint32_t ZVXMLDocument::FindPath(uint32_t parent, uint32_t current, const wchar_t* path) const
{
    if (*path == L'/')
    {
        parent = current = 0;
        ++path;
    }
    for (;;)
    {
        PathStep step;
        if (!step.Read(path))
            return 0;
        const uint32_t found = FindStep(parent, current, step);
        if (found == 0 || *path == L'\0')
            return found;
        ++path;
        parent = found;
        current = 0;
    }
}

uint32_t ZVXMLDocument::FindStep(uint32_t parent, uint32_t current, const PathStep& step) const
{
    if (step.Index > 0)
        current = 0;
    int32_t remaining = std::max(step.Index, 1);
    while ((current = NextElement(parent, current)) != 0)
        if (HasName(current, step.Name, step.Length) && --remaining == 0)
            return current;
    return 0;
}

uint32_t ZVXMLDocument::NextElement(uint32_t parent, uint32_t current) const
{
    return current != 0 ? m_index[current].NextSibling : m_index[parent].FirstChild;
}

bool ZVXMLDocument::HasName(uint32_t element, const wchar_t* name, int32_t length) const
{
    const wchar_t* start = m_document.GetText() + m_index[element].Start + 1;
    return m_index[element].Length > length + 1 && ZVXMLText::AreEqual(start, name, length, NameCase()) &&
           ZVXMLText::IsNameEnd(start[length]);
}

ZVString ZVXMLDocument::GetElementPath() const
{
    ZVNumberArray<uint32_t> elements;
    for (uint32_t element = m_position.Main != 0 ? m_position.Main : m_position.Parent; element != 0;
         element = m_index[element].Parent)
        elements.Add(element);
    ZVString path;
    for (int32_t index = elements.GetCount(); index-- > 0;)
        AppendPathStep(path, elements[index]);
    return path;
}

void ZVXMLDocument::AppendPathStep(ZVString& path, uint32_t element) const
{
    const wchar_t* name = m_document.GetText() + m_index[element].Start + 1;
    const int32_t length = GetNameEnd(element) - m_index[element].Start - 1;
    int32_t index = 0;
    int32_t count = 0;
    for (uint32_t sibling = m_index[m_index[element].Parent].FirstChild; sibling != 0; sibling = m_index[sibling].NextSibling)
    {
        if (HasName(sibling, name, length))
            ++count;
        if (sibling == element)
            index = count;
    }
    path.AppendCharacter(L'/');
    path.Append(name, length);
    if (count > 1)
        path.AppendFormat(L"[%d]", index);
}
