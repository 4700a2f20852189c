#pragma once

#include "core/string/ZVString.h"

#include <memory>

class CAtom;
class CContainerAtom;
class CILSTAtom;
class CMOOVAtom;
class CUdtaAtom;

// The places of a movie that tell its tags. All but the movie itself may be null.
struct CTagPlaces
{
    CMOOVAtom& Movie;
    CUdtaAtom* UserData;    // that has the list, or would have it
    CILSTAtom* List;        // of tags that are known by their types
    CContainerAtom* Keyed;  // the metadata of QuickTime
};

// Sets the tags of a movie by the names that the library knows them by, so that reading them tells the new value.
class CTagEditor
{
public:
    // The places must outlive this.
    explicit CTagEditor(const CTagPlaces& places) : m_places(places) {}

    // Sets a tag, or removes it if the value is empty. The case of the name does not count. What is made of the file itself, and
    // the name of the tool, is left alone. Throws a message, with nothing changed, if the value does not suit the tag or if the
    // movie has no room for tags.
    void Set(const ZVString& name, const ZVString& value);

private:
    struct Target;

    static Target FindTarget(const ZVString& name);
    std::unique_ptr<CAtom> MakeAtom(const Target& target, const ZVString& value) const;
    std::unique_ptr<CAtom> MakeFreeForm(const Target& target, const ZVString& value) const;
    CILSTAtom& MakeList();
    CContainerAtom* FindMeta() const;
    void ReplaceTag(CILSTAtom& list, const Target& target, std::unique_ptr<CAtom> atom) const;
    void ReplaceCopyright(const ZVString& value) const;

    CTagPlaces m_places;
};
