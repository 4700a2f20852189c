#include "mp4/quicktime/QTMetaAtom.h"

#include "mp4/quicktime/CKeyedMetadata.h"

bool QTMetaAtom::GetTags(ZVPropertyMap& map) const
{
    return CKeyedMetadata(*this).GetTags(map);
}

bool QTMetaAtom::GetImageFile(ZVFilename& filename) const
{
    return CKeyedMetadata(*this).GetImageFile(filename);
}
