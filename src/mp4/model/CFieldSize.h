#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFieldVisitor.h"

// Adds up the bytes of a body, and works out the sizes of the children anew.
class CFieldSize final : public CFieldVisitor
{
public:
    uint64_t GetSize() const { return m_size; }

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
    uint64_t m_size = 0;
};
