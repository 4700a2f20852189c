#pragma once

#include "core/string/ZVString.h"
#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

#include <memory>
#include <string_view>

// mean and name: who defined a free-form tag, and what it is called. The text begins after a version and flags.
class CFreeFormTextAtom : public CAtom
{
public:
    static const CAtomClass MeanClass;
    static const CAtomClass NameClass;

    using CAtom::CAtom;

    // A mean or name with a text in UTF-8.
    static std::unique_ptr<CFreeFormTextAtom> MakeNew(const CAtomClass& atomClass, std::string_view text);

    void Fields(CFieldVisitor& visitor) { visitor.Rest("body", m_body); }

    // The text, which is empty in a body that is too short for one.
    ZVString GetText() const;

private:
    static constexpr size_t TextStart = 4;

    CAtomBytes m_body;
};

inline constexpr CAtomClass CFreeFormTextAtom::MeanClass = MakeAtomClass<CFreeFormTextAtom>("CMeanAtom");
inline constexpr CAtomClass CFreeFormTextAtom::NameClass = MakeAtomClass<CFreeFormTextAtom>("C__NameAtom");
