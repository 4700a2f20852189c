#include "mp4/model/CFieldSize.h"

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CContainerAtom.h"

void CFieldSize::Number(const char*, int32_t width, uint64_t&)
{
    m_size += static_cast<uint64_t>(width);
}

void CFieldSize::Zero(int32_t count)
{
    m_size += static_cast<uint64_t>(count);
}

void CFieldSize::Rest(const char*, CAtomBytes& bytes)
{
    m_size += static_cast<uint64_t>(bytes.GetCount());
}

void CFieldSize::Children(CContainerAtom& atom, uint32_t)
{
    for (CAtom* const child : atom.GetChildren())
    {
        child->ComputeSize();
        m_size += child->GetSize();
    }
    m_size += static_cast<uint64_t>(atom.GetPassedOver().GetCount());
}
