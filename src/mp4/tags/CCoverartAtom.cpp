#include "mp4/tags/CCoverartAtom.h"

#include "mp4/tags/CTagDataAtom.h"
#include "mp4/tags/WriteCoverFile.h"

bool CCoverartAtom::GetValue(ZVFilename& filename) const
{
    const CTagDataAtom* const data = FindData();
    return data != nullptr &&
           WriteCoverFile(data->GetValue(), data->GetDataType() == CTagDataAtom::PNG ? L"png" : L"jpg", filename);
}
