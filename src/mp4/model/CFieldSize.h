#pragma once

#include "mp4/model/CKnownFieldVisitor.h"

// Adds up the bytes of a body, and works out the sizes of the children anew.
class CFieldSize final : public CKnownFieldVisitor
{
public:
    uint64_t GetSize() const { return m_size; }

    void Number(const char* name, int32_t width, uint64_t& value) override;
    void Zero(int32_t count) override;
    void Rest(const char* name, CAtomBytes& bytes) override;
    void Children(CContainerAtom& atom, uint32_t required) override;

private:
    uint64_t m_size = 0;
};
