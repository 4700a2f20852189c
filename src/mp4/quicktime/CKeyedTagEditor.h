#pragma once

#include "core/string/ZVString.h"

#include <cstdint>
#include <memory>
#include <vector>

class CAtom;
class CContainerAtom;
class CILSTAtom;
class MetadataItemKeysAtom;

// Changes what the metadata of QuickTime tells of a tag. Its values are shown in the place of those of the list of tags, so one that
// stayed as it was would hide a new value there. Items are changed and removed, none is added.
//
// First all changes are prepared, which may fail, and then made, which does not.
class CKeyedTagEditor
{
public:
    // The meta atom must outlive this; without one there is nothing to change.
    explicit CKeyedTagEditor(CContainerAtom* meta);
    ~CKeyedTagEditor();

    // Whether an item tells a tag, in any case of its name.
    bool HasItem(const ZVString& tag) const { return !FindItems(tag).empty(); }
    // Prepares a new value for the items of a tag, or with an empty value their removal. Throws for one that does not fit them.
    void Prepare(const ZVString& tag, const ZVString& value);
    void Commit();

private:
    // What takes the place of the items of a type; null if nothing does.
    struct Change
    {
        uint32_t Type;
        std::unique_ptr<CAtom> Item;
    };

    struct FoundItem
    {
        const CAtom* Item;
        uint32_t DataType;  // that items of its key have
    };

    std::vector<FoundItem> FindItems(const ZVString& tag) const;

    const MetadataItemKeysAtom* m_keys = nullptr;
    CILSTAtom* m_items = nullptr;
    std::vector<Change> m_changes;
};
