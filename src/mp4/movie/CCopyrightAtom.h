#pragma once

#include "mp4/model/CFullAtom.h"

// cprt in udta (ISO/IEC 14496-12, 8.10.2).
class CCopyrightAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    static std::unique_ptr<CCopyrightAtom> MakeNew(uint16_t language, const ZVString& text);

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        if (visitor.If(m_hasLanguage, 2))
            visitor.Field("language", m_language);
        visitor.Rest("text", m_text);
    }

    // Three letters of five bits each, or 0.
    uint16_t GetLanguage() const { return m_language; }
    // The text up to its NUL, in UTF-8.
    ZVString GetValue() const;

private:
    bool m_hasLanguage = true;
    uint16_t m_language = 0;
    CAtomBytes m_text;
};

inline constexpr CAtomClass CCopyrightAtom::Class = MakeAtomClass<CCopyrightAtom>("CCopyrightAtom");
