#include "mp4/tags/CCoverartAtom.h"

#include "mp4/tags/CTagDataAtom.h"
#include "mp4/tags/WriteCoverFile.h"

namespace
{
constexpr uint32_t PNGType = 14;
}

bool CCoverartAtom::GetValue(ZVFilename& filename) const
{
    const CTagDataAtom* const data = FindData();
    return data != nullptr && WriteCoverFile(data->GetValue(), data->GetDataType() == PNGType ? L"png" : L"jpg", filename);
}
