#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFieldVisitor.h"

#include <iosfwd>

// Shows the fields of a body as text, a line for each, and the children below them.
class CFieldDump final : public CFieldVisitor
{
public:
    // Without the fields when verbosity is 0.
    CFieldDump(int32_t verbosity, int32_t indent, std::ostream& stream)
        : m_verbosity(verbosity), m_indent(indent), m_stream(stream)
    {
    }

    void Number(const char* name, int32_t width, uint64_t& value) override;
    void Zero(int32_t count) override;
    void Bytes(const char* name, int64_t count, CAtomBytes& bytes) override;
    void Rest(const char* name, CAtomBytes& bytes) override;
    void Range(const char* name, CAtomBytes& bytes, CRangeEnd end) override;
    void Text(const char* name, CAtomBytes& bytes) override;
    void Table(const char* name, uint32_t count, CAtomTable& table) override;
    void Children(CContainerAtom& atom, uint32_t required) override;
    uint32_t CountRows(const CAtomTable& table) const override { return table.GetCount(); }
    bool If(bool& isThere, int64_t) override { return isThere; }
    bool HasEntry(bool isInList, int64_t) override { return isInList; }

private:
    std::ostream& Begin(const char* name);
    void ShowBytes(const char* name, const CAtomBytes& bytes);

    int32_t m_verbosity;
    int32_t m_indent;
    std::ostream& m_stream;
};
