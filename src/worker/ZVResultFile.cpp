#include "worker/ZVResultFile.h"

#include "core/property/ZVPropertyMap.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"

namespace
{
struct SaveMode
{
    ZVResultForm Form;
    int32_t Mode;  // as ZVString::SaveToFile counts them
};

constexpr SaveMode SaveModes[] = {
    {ZVResultForm::UTF8,   2},
    {ZVResultForm::Narrow, 1},
};
}

bool WriteResult(const ZVPropertyMap& result, const ZVString& path, ZVResultForm form)
{
    ZVString text;
    result.ToXML(text, L"XMLPH", false, 1.0);
    for (const SaveMode& saveMode : SaveModes)
        if (saveMode.Form == form)
            return text.SaveToFile(path, saveMode.Mode);
    return false;
}

bool WouldReplace(const ZVString& resultPath, const ZVString& inputPath)
{
    return ZVFileInfo(ZVFileSystem::GetSavePath(resultPath)).IsSameFile(ZVFileInfo(inputPath));
}
