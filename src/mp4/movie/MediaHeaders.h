#pragma once

#include "mp4/model/CFullAtom.h"
#include "mp4/model/Exception.h"

#include <algorithm>

// The headers that say what kind of media a track has (ISO/IEC 14496-12, 12.1.2 to 12.4).

// vmhd, of video.
class CVMHDAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("graphics mode", m_graphicsMode);
        for (uint16_t& color : m_opColor)
            visitor.Field("opcolor", color);
    }

    void Append(CAtom& other) override
    {
        const auto& second = static_cast<const CVMHDAtom&>(other);
        if (m_graphicsMode != second.m_graphicsMode || !std::ranges::equal(m_opColor, second.m_opColor))
            ThrowException(L"VMHD Atom has different data");
    }

private:
    uint16_t m_graphicsMode = 0;
    uint16_t m_opColor[3] = {};
};

// smhd, of sound.
class CSMHDAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("balance", m_balance);
        visitor.Field("reserved", m_reserved);
    }

private:
    uint16_t m_balance = 0;
    uint16_t m_reserved = 0;  // not always 0
};

// nmhd, of anything else.
class CNMHDAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;
};

// hmhd, of hints for streaming.
class CHMHDAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("maximum PDU size", m_maximumPDUSize);
        visitor.Field("average PDU size", m_averagePDUSize);
        visitor.Field("maximum bit rate", m_maximumBitRate);
        visitor.Field("average bit rate", m_averageBitRate);
        visitor.Field("reserved", m_reserved);
    }

private:
    uint16_t m_maximumPDUSize = 0;
    uint16_t m_averagePDUSize = 0;
    uint32_t m_maximumBitRate = 0;
    uint32_t m_averageBitRate = 0;
    uint32_t m_reserved = 0;
};

inline constexpr CAtomClass CVMHDAtom::Class = MakeAtomClass<CVMHDAtom>("CVMHDAtom");
inline constexpr CAtomClass CSMHDAtom::Class = MakeAtomClass<CSMHDAtom>("CSMHDAtom");
inline constexpr CAtomClass CNMHDAtom::Class = MakeAtomClass<CNMHDAtom>("CNMHDAtom");
inline constexpr CAtomClass CHMHDAtom::Class = MakeAtomClass<CHMHDAtom>("CHMHDAtom");
