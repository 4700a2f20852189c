#pragma once

#include "mp4/model/CFullAtom.h"

// What QuickTime adds to a description of sound.

// wave: what the decoder must know.
class WAVEAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;
};

// frma: the type of the sample entry that the sound has.
class FRMAAtom : public CAtom
{
public:
    static const CAtomClass Class;

    using CAtom::CAtom;

    void Fields(CFieldVisitor& visitor) { visitor.Rest("format", m_format); }

    const CAtomBytes& GetFormat() const { return m_format; }

private:
    CAtomBytes m_format;
};

// chan: which channel is where.
class AudioChannelLayoutAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Rest("layout", m_layout);
    }

private:
    CAtomBytes m_layout;
};

inline constexpr CAtomClass WAVEAtom::Class = MakeAtomClass<WAVEAtom>("WAVEAtom");
inline constexpr CAtomClass FRMAAtom::Class = MakeAtomClass<FRMAAtom>("FRMAAtom");
inline constexpr CAtomClass AudioChannelLayoutAtom::Class = MakeAtomClass<AudioChannelLayoutAtom>("AudioChannelLayoutAtom");
