#pragma once

#include "core/string/ZVString.h"
#include "mp4/model/CContainerAtom.h"

// ----: a tag that has no type of its own but a name, and a text that says who defined it. Each function gives false, and leaves
// the text as it was, if the item lacks what it asks for.
class C4DashesAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    // An item with all three; of a long mean the start is kept.
    static std::unique_ptr<C4DashesAtom> MakeNew(const ZVString& mean, const ZVString& name, const ZVString& value);

    // Who defined the tag, in the form of a reversed domain name; it may be empty.
    bool GetMean(ZVString& text) const;
    // The name, which is not empty.
    bool GetName(ZVString& text) const;
    // The value, which may be empty.
    bool GetData(ZVString& text) const;
};

inline constexpr CAtomClass C4DashesAtom::Class = MakeAtomClass<C4DashesAtom>("C4DashesAtom");
