#pragma once

#include "mp4/samples/CESDescriptorAtom.h"

// alac inside a sample entry of that type: what a decoder of the Apple Lossless codec must know.
class CALACDesc : public CESDescriptorAtom
{
public:
    static const CAtomClass Class;

    using CESDescriptorAtom::CESDescriptorAtom;

protected:
    CStreamDescription Parse() const override;

private:
    // The form in which decoders take it: a frma atom in front of the whole atom.
    std::vector<uint8_t> MakeCookie() const;
};

inline constexpr CAtomClass CALACDesc::Class = MakeAtomClass<CALACDesc>("CALACDesc");
