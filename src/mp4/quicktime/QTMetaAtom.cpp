#include "mp4/quicktime/QTMetaAtom.h"

#include "mp4/quicktime/CKeyedMetadata.h"
#include "mp4/quicktime/CKeyedTagEditor.h"

bool QTMetaAtom::GetTags(ZVPropertyMap& map) const
{
    return CKeyedMetadata(*this).GetTags(map);
}

bool QTMetaAtom::GetImageFile(ZVFilename& filename) const
{
    return CKeyedMetadata(*this).GetImageFile(filename);
}

bool QTMetaAtom::SetProperty(const ZVString& tag, const ZVString& value)
{
    CKeyedTagEditor editor(this);
    if (!editor.Prepare(tag, value))
        return editor.Add(tag, value);
    editor.Commit();
    return true;
}
