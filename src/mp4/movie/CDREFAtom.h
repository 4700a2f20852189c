#pragma once

#include "mp4/model/CFullAtom.h"
#include "mp4/model/GetText.h"

// dref: where the media of a track are (ISO/IEC 14496-12, 8.7.2), which is nearly always the file itself.
class CDREFAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("entry count", m_count);
        // A count of 0 takes all that are there.
        visitor.Children(*this, m_count);
    }

    // Throws when media of one of the two lie in another file.
    void Append(CAtom& other) override;

private:
    uint32_t m_count = 0;
};

// url and urn: one place where media are. An empty one is the file itself.
class CDataEntryAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        if (GetType() == FourCC("urn "))
            visitor.Text("name", m_name);
        visitor.Text("location", m_location);
    }

    void Append(CAtom& other) override;

    bool HasLocation() const { return !GetText(m_location.Text()).IsEmpty(); }

private:
    CAtomBytes m_name;
    CAtomBytes m_location;
};

inline constexpr CAtomClass CDREFAtom::Class = MakeAtomClass<CDREFAtom>("CDREFAtom");
inline constexpr CAtomClass CDataEntryAtom::Class = MakeAtomClass<CDataEntryAtom>("CDataEntryAtom");
