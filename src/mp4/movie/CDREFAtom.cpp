#include "mp4/movie/CDREFAtom.h"

#include "mp4/model/Exception.h"

namespace
{
void CheckPlaces(const CDREFAtom& references)
{
    for (const CAtom* const child : references.GetChildren())
        if (const auto* const entry = dynamic_cast<const CDataEntryAtom*>(child); entry != nullptr && entry->HasLocation())
            ThrowException(L"Cannot merge content referred to by URL");
}
}

void CDREFAtom::Append(CAtom& other)
{
    CheckPlaces(*this);
    CheckPlaces(static_cast<const CDREFAtom&>(other));
    CFullAtom::Append(other);
}

// The own file is where the media of both are.
void CDataEntryAtom::Append(CAtom&) {}
