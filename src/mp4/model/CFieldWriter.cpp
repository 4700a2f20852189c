#include "mp4/model/CFieldWriter.h"

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CContainerAtom.h"

void CFieldWriter::Number(const char*, int32_t width, uint64_t& value)
{
    m_writer.WriteNumber(value, width);
}

void CFieldWriter::Zero(int32_t count)
{
    for (; count > 0; --count)
        m_writer.WriteNumber(0, 1);
}

void CFieldWriter::Rest(const char*, CAtomBytes& bytes)
{
    bytes.Write(m_writer);
}

void CFieldWriter::Children(CContainerAtom& atom, uint32_t)
{
    for (CAtom* const child : atom.GetChildren())
        child->Write(m_writer);
    atom.GetPassedOver().Write(m_writer);
}
