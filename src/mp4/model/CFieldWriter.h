#pragma once

#include "mp4/model/CAtomWriter.h"
#include "mp4/model/CKnownFieldVisitor.h"

// Writes the fields of a body.
class CFieldWriter final : public CKnownFieldVisitor
{
public:
    explicit CFieldWriter(CAtomWriter& writer) : m_writer(writer) {}

    void Number(const char* name, int32_t width, uint64_t& value) override;
    void Zero(int32_t count) override;
    void Rest(const char* name, CAtomBytes& bytes) override;
    void Children(CContainerAtom& atom, uint32_t required) override;

private:
    CAtomWriter& m_writer;
};
