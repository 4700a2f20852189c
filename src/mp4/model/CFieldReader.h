#pragma once

#include "mp4/model/CAtomReader.h"
#include "mp4/model/CFieldVisitor.h"

// Reads the fields of a body. It alone knows how many bytes of the body remain: what of them is used up is fewer afterwards, and
// a fixed field that is longer makes the count negative.
class CFieldReader final : public CFieldVisitor
{
public:
    CFieldReader(CAtomReader& reader, int64_t remaining) : m_reader(reader), m_remaining(remaining) {}

    int64_t GetRemaining() const { return m_remaining; }

    void Number(const char* name, int32_t width, uint64_t& value) override;
    void Zero(int32_t count) override;
    void Bytes(const char* name, int64_t count, CAtomBytes& bytes) override;
    void Rest(const char* name, CAtomBytes& bytes) override;
    void Range(const char* name, CAtomBytes& bytes, CRangeEnd end) override;
    void Text(const char* name, CAtomBytes& bytes) override;
    void Table(const char* name, uint32_t count, CAtomTable& table) override;
    void Children(CContainerAtom& atom, uint32_t required) override;
    uint32_t CountRows(const CAtomTable& table) const override;
    bool If(bool& isThere, int64_t bytes) override { return isThere = m_remaining >= bytes; }
    bool HasEntry(bool isInList, int64_t bytes) override;

private:
    // Counts bytes as used up.
    void Take(int64_t count);

    CAtomReader& m_reader;
    int64_t m_remaining;
};
