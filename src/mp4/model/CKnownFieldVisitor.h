#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFieldVisitor.h"

// Goes through the fields of an atom that was read or made: all of it is there, so what remains plays no part, and any run of bytes
// is as long as it is.
class CKnownFieldVisitor : public CFieldVisitor
{
public:
    void Bytes(const char* name, int64_t, CAtomBytes& bytes) override { Rest(name, bytes); }
    void Range(const char* name, CAtomBytes& bytes, CRangeEnd) override { Rest(name, bytes); }
    void Text(const char* name, CAtomBytes& bytes) override { Rest(name, bytes); }
    void Table(const char* name, uint32_t, CAtomTable& table) override { Rest(name, table.GetBytes()); }
    uint32_t CountRows(const CAtomTable& table) const override { return table.GetCount(); }
    bool If(bool& isThere, int64_t) override { return isThere; }
    bool HasEntry(bool isInList, int64_t) override { return isInList; }
};
