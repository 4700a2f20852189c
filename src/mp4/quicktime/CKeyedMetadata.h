#pragma once

#include "core/string/ZVString.h"

class CContainerAtom;
class CILSTAtom;
class MetadataItemAtom;
class MetadataItemKeysAtom;
class ZVFilename;
class ZVPropertyMap;

// The metadata of a meta atom whose handler is mdta: its items are known by keys. Both forms of the meta atom can hold them.
class CKeyedMetadata
{
public:
    // The atom must outlive this.
    explicit CKeyedMetadata(const CContainerAtom& meta);

    // Sets what the items say under the names of their keys' tags, in the place of what the map has; dates as their number of
    // days. A place is also set in its parts, and a camera is made of its make and its model. The last picture of a tag is
    // written to a temporary file. False, with the map as it was, if the atom has no such metadata.
    bool GetTags(ZVPropertyMap& map) const;
    // Writes the picture to a file, or without a name to a new temporary one, which filename then names. Of several the last key's
    // is taken. False if there is none or if it could not be written.
    bool GetImageFile(ZVFilename& filename) const;

private:
    bool HasItems() const { return m_keys != nullptr && m_items != nullptr; }

    const MetadataItemKeysAtom* m_keys = nullptr;
    const CILSTAtom* m_items = nullptr;
};
