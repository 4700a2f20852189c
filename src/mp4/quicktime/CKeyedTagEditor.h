#pragma once

#include "core/string/ZVString.h"

#include <cstdint>
#include <map>
#include <memory>

class CAtom;
class CContainerAtom;
class CILSTAtom;
class MetadataItemKeysAtom;

// Changes what the metadata of QuickTime tells of a tag. Its values are shown in the place of those of the list of tags, so one that
// stayed as it was would hide a new value there.
//
// First all changes are prepared, which may fail, and then made, which does not.
class CKeyedTagEditor
{
public:
    // The meta atom must outlive this; without one there is nothing to change.
    explicit CKeyedTagEditor(CContainerAtom* meta);
    ~CKeyedTagEditor();

    // Prepares a new value for the items of a tag, in any case of its name, or with an empty value their removal. Where a key stands
    // several times only its last item stays. False if no item tells the tag. Throws for a value that does not fit.
    bool Prepare(const ZVString& tag, const ZVString& value);
    // Makes what was prepared, in n steps for n items.
    void Commit();
    // Adds an item for a tag that none tells, with its key if that is missing. False if the tag has no key, or if the list of keys
    // takes no more. Throws for a value that does not fit.
    bool Add(const ZVString& tag, const ZVString& value);

private:
    MetadataItemKeysAtom* m_keys = nullptr;
    CILSTAtom* m_items = nullptr;
    // By the types of items: what takes their place, or null if nothing does.
    std::map<uint32_t, std::unique_ptr<CAtom>> m_changes;
};
