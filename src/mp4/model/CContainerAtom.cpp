#include "mp4/model/CContainerAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/model/StopOnBrokenTree.h"

#include <algorithm>

CContainerAtom::CContainerAtom(const CContainerAtom& other) : CAtom(other), m_passedOver(other.m_passedOver)
{
    for (const CAtom* const child : other.m_children)
        AddChild(std::unique_ptr<CAtom>(child->Clone(this)));
}

void CContainerAtom::ConvertToRelative()
{
    for (CAtom* const child : m_children)
        child->ConvertToRelative();
}

void CContainerAtom::ConvertToAbsolute()
{
    for (CAtom* const child : m_children)
        child->ConvertToAbsolute();
}

bool CContainerAtom::StaysOwn(uint32_t type)
{
    constexpr uint32_t Types[] = {FourCC("free"), FourCC("btrt"), FourCC("udta"), FourCC("meta")};
    return std::ranges::find(Types, type) != std::end(Types);
}

std::unordered_map<uint32_t, int32_t> CContainerAtom::CountTypes() const
{
    std::unordered_map<uint32_t, int32_t> counts;
    for (const CAtom* const child : m_children)
        ++counts[child->GetType()];
    return counts;
}

void CContainerAtom::Append(CAtom& other)
{
    if (&other.GetClass() != &GetClass())
        CAtom::Append(other);
    const auto& second = static_cast<CContainerAtom&>(other);
    // What is appended may add children.
    const std::unordered_map<uint32_t, int32_t> counts = CountTypes();
    const std::unordered_map<uint32_t, int32_t> otherCounts = second.CountTypes();
    for (CAtom* const child : second.m_children)
    {
        const uint32_t type = child->GetType();
        if (StaysOwn(type))
            continue;
        if (!counts.contains(type))
            AppendMissing(*child);
        else if (counts.at(type) == 1 && otherCounts.at(type) == 1)
            GetFirstChild(type)->Append(*child);
        else
            AppendMultiple(*child);
    }
    // It may tell of each sample, and then it would fall short.
    for (CAtom* const child : m_children)
        if (child->IsOpaque() && !StaysOwn(child->GetType()) && !otherCounts.contains(child->GetType()))
            child->CAtom::Append(*child);
}

void CContainerAtom::AppendMultiple(CAtom& child)
{
    ThrowException(L"CContainerAtom::AppendMultiple not implemented for %s with child %s", GetTypeName(), child.GetTypeName());
}

void CContainerAtom::AppendRoot(CAtom&)
{
    ThrowException(L"CContainerAtom::AppendRoot not implemented for %s", GetTypeName());
}

void CContainerAtom::AppendMissing(CAtom&)
{
    ThrowException(L"CContainerAtom::AppendMissing not implemented for %s", GetTypeName());
}

int64_t CContainerAtom::ReadChildren(CAtomReader& reader, int64_t& remaining, uint32_t required)
{
    const int64_t before = remaining;
    for (uint32_t count = required; remaining >= HeaderSize;)
    {
        std::unique_ptr<CAtom> child = Read(reader, this, static_cast<uint64_t>(remaining));
        if (child == nullptr)
        {
            // A file that ends here has none of the rest, or only a part of it.
            m_passedOver.Read(reader, std::min(remaining, reader.GetAvailable()));
            remaining = 0;
            break;
        }
        // A child is never longer than what was available for it, but for one whose size has 64 bits.
        if (child->GetSize() > static_cast<uint64_t>(remaining))
            StopOnBrokenTree();
        remaining -= static_cast<int64_t>(child->GetSize());
        AddChild(std::move(child));
        if (required != 0 && --count == 0)
            return before - remaining;
    }
    if (required != 0)
        ThrowException(L"CContainerAtom::ReadChildren didn't read the requested atoms");
    return before - remaining;
}

void CContainerAtom::AddChild(std::unique_ptr<CAtom> child)
{
    InsertChild(m_children.GetCount(), std::move(child));
}

void CContainerAtom::InsertChild(int32_t index, std::unique_ptr<CAtom> child)
{
    child->SetParent(this);
    m_children.InsertAt(index, child.get());
    child.release();
}

void CContainerAtom::ReplaceChild(CAtom& child, std::unique_ptr<CAtom> replacement)
{
    replacement->SetParent(this);
    m_children.SetElement(m_children.Find(&child), replacement.release(), true);
}

void CContainerAtom::RemoveChildren(uint32_t type)
{
    RemoveChildrenIf([type](const CAtom& child) { return child.GetType() == type; });
}

void CContainerAtom::RemoveAllChildren()
{
    m_children.RemoveAll();
    m_passedOver = CAtomBytes();
}

CAtom* CContainerAtom::GetChild(uint32_t type, int32_t& index) const
{
    for (CAtom* const child : m_children)
        if (child->GetType() == type && index-- == 0)
            return child;
    return nullptr;
}

CAtom* CContainerAtom::GetFirstChild(uint32_t type) const
{
    int32_t index = 0;
    return GetChild(type, index);
}

CAtom& CContainerAtom::GetRequiredChild(uint32_t type) const
{
    if (std::ranges::count(m_children, type, &CAtom::GetType) != 1)
        ThrowException(L"%s atom has wrong number of %s atoms", GetTypeName(), GetTypeText(type));
    return *GetFirstChild(type);
}
