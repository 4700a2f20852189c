#pragma once

#include "mp4/model/CKnownFieldVisitor.h"

#include <iosfwd>

// Shows the fields of a body as text, a line for each, and the children below them.
class CFieldDump final : public CKnownFieldVisitor
{
public:
    // Without the fields when verbosity is 0.
    CFieldDump(int32_t verbosity, int32_t indent, std::ostream& stream)
        : m_verbosity(verbosity), m_indent(indent), m_stream(stream)
    {
    }

    void Number(const char* name, int32_t width, uint64_t& value) override;
    void Zero(int32_t count) override;
    void Rest(const char* name, CAtomBytes& bytes) override;
    void Range(const char* name, CAtomBytes& bytes, CRangeEnd end) override;
    void Table(const char* name, uint32_t count, CAtomTable& table) override;
    void Children(CContainerAtom& atom, uint32_t required) override;

private:
    std::ostream& Begin(const char* name);
    void ShowBytes(const char* name, const CAtomBytes& bytes);

    int32_t m_verbosity;
    int32_t m_indent;
    std::ostream& m_stream;
};
