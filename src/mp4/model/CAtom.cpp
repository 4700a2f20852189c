#include "mp4/model/CAtom.h"

#include "mp4/model/CAtomWriter.h"
#include "mp4/model/CFieldDump.h"
#include "mp4/model/CFieldSize.h"
#include "mp4/model/CFieldWriter.h"
#include "mp4/model/Exception.h"

#include <iomanip>
#include <ostream>

namespace
{
// Four characters: those of Latin-1 in UTF-8, and a dot for each byte that a terminal would obey.
void ShowType(uint32_t type, std::ostream& stream)
{
    for (int shift = 24; shift >= 0; shift -= 8)
    {
        const auto byte = static_cast<uint8_t>(type >> shift);
        if (byte < 0x20 || (byte > 0x7e && byte < 0xa0))
            stream << '.';
        else if (byte < 0x80)
            stream << static_cast<char>(byte);
        else
            stream << static_cast<char>(0xc0 | byte >> 6) << static_cast<char>(0x80 | (byte & 0x3f));
    }
}
}

CAtom::CAtom(const CAtomClass& atomClass, uint32_t type, const CAtom*) : m_type(type), m_class(&atomClass) {}

CAtom* CAtom::Clone(CAtom* parent) const
{
    CAtom* const copy = m_class->Copy(*this);
    copy->m_parent = parent;
    return copy;
}

void CAtom::ComputeSize()
{
    CFieldSize fields;
    m_class->Fields(*this, fields);
    m_size = HeaderSize + fields.GetSize();
    m_size += static_cast<uint64_t>(GetWrittenHeaderSize() - HeaderSize);
}

void CAtom::Write(CAtomWriter& writer)
{
    writer.WriteNumber(IsLarge() ? 1 : m_size, 4);
    writer.WriteNumber(m_type, 4);
    if (IsLarge())
        writer.WriteNumber(m_size, 8);
    CFieldWriter fields(writer);
    m_class->Fields(*this, fields);
}

void CAtom::Dump(int32_t verbosity, int32_t indent, std::ostream& stream)
{
    stream << std::setw(indent) << ""
           << "Atom: ";
    ShowType(m_type, stream);
    stream << "\tPosition: " << m_position << ", length=" << m_size << " \n";
    CFieldDump fields(verbosity, indent, stream);
    m_class->Fields(*this, fields);
}

void CAtom::Verify(const CMDATList&, bool)
{
    ThrowException(L"CAtom::Verify not implemented");
}

void CAtom::Append(CAtom&)
{
    ThrowException(L"Append not implemented for this atom");
}

CAtom& CAtom::GetParent(uint32_t type) const
{
    if (m_parent == nullptr)
        ThrowException(L"%s Parent is null", GetTypeName());
    if (m_parent->GetType() != type)
        ThrowException(L"%s Parent is not %s: %s", GetTypeName(), GetTypeText(type), m_parent->GetTypeName());
    return *m_parent;
}

CAtom* CAtom::FindParent(uint32_t type) const
{
    CAtom* parent = m_parent;
    while (parent != nullptr && parent->GetType() != type)
        parent = parent->m_parent;
    return parent;
}
