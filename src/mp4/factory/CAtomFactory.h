#pragma once

#include "mp4/model/CAtom.h"

#include <cstdint>
#include <memory>

// Turns the next header of a file into an atom of the right class, with its body.
class CAtomFactory
{
public:
    // The class of a type inside a parent of a type, which is 0 when there is no parent. What is not known is kept as it stands.
    static const CAtomClass& FindClass(uint32_t type, uint32_t parentType);

private:
    friend class CAtom;

    // An atom that is being read.
    struct Header
    {
        uint32_t Type;
        uint64_t Position;
        int64_t Size;       // of the header itself
        int64_t Remaining;  // of the body
    };

    static std::unique_ptr<CAtom> ReadAtom(CAtomReader& reader, CAtom* parent, const Header& header);
    static std::unique_ptr<CAtom> ReadMeta(CAtomReader& reader, CAtom* parent, Header& header);
    static std::unique_ptr<CAtom> Try(const CAtomClass& atomClass, CAtomReader& reader, CAtom* parent, Header& header);
    static std::unique_ptr<CAtom> ReadBody(const CAtomClass& atomClass, CAtomReader& reader, CAtom* parent, Header& header);
};
