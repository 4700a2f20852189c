#include "mp4/model/CFieldDump.h"

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CContainerAtom.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace
{
constexpr int32_t IndentOfAChild = 2;
// So that fields and children of an atom can be told apart.
constexpr int32_t IndentOfAField = 4;

// No more of a run of bytes is shown.
constexpr size_t MaximumBytesShown = 32;

bool IsPrintable(uint8_t byte)
{
    return byte >= 0x20 && byte <= 0x7e;
}
}

std::ostream& CFieldDump::Begin(const char* name)
{
    return m_stream << std::setw(m_indent + IndentOfAField) << "" << name << ": ";
}

void CFieldDump::Number(const char* name, int32_t width, uint64_t& value)
{
    if (m_verbosity == 0)
        return;
    Begin(name) << value;
    // A number of four bytes is often a type.
    const ZVString type = GetTypeText(static_cast<uint32_t>(value));
    if (width == 4 && value != 0 &&
        std::ranges::all_of(type.View(), [](wchar_t character) { return IsPrintable(static_cast<uint8_t>(character)); }))
        m_stream << " '" << std::string(type.View().begin(), type.View().end()) << "'";
    m_stream << '\n';
}

void CFieldDump::Zero(int32_t count)
{
    if (m_verbosity != 0)
        Begin("reserved") << count << " bytes\n";
}

void CFieldDump::ShowBytes(const char* name, const CAtomBytes& bytes)
{
    if (m_verbosity == 0 || bytes.GetCount() == 0)
        return;
    Begin(name) << bytes.GetCount() << " bytes";
    const auto shown = bytes.View().first(std::min(bytes.View().size(), MaximumBytesShown));
    if (!shown.empty())
        m_stream << ": ";
    for (const uint8_t byte : shown)
        m_stream << (IsPrintable(byte) ? static_cast<char>(byte) : '.');
    m_stream << (shown.size() < bytes.View().size() ? "...\n" : "\n");
}

void CFieldDump::Rest(const char* name, CAtomBytes& bytes)
{
    ShowBytes(name, bytes);
}

void CFieldDump::Range(const char* name, CAtomBytes& bytes, CRangeEnd)
{
    if (m_verbosity != 0)
        Begin(name) << bytes.GetCount() << " bytes at " << bytes.GetStart() << '\n';
}

void CFieldDump::Table(const char* name, uint32_t, CAtomTable& table)
{
    if (m_verbosity != 0)
        Begin(name) << table.GetCount() << " rows of " << table.GetRowWidth() << " bytes\n";
}

void CFieldDump::Children(CContainerAtom& atom, uint32_t)
{
    for (CAtom* const child : atom.GetChildren())
        child->Dump(m_verbosity, m_indent + IndentOfAChild, m_stream);
    ShowBytes("no atoms", atom.GetPassedOver());
}
