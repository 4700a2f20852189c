#include "video/thumbnail/WriteThumbnailMetadata.h"

#include "core/property/ZVPropertyMap.h"
#include "system/file/ZVFileSystem.h"

#include <algorithm>

namespace
{
constexpr const wchar_t* RequiredKeys[] = {L"Width", L"Height", L"FPS"};

// As ZVString::SaveToFile counts them.
constexpr int32_t UTF8Mode = 2;
}

bool WriteThumbnailMetadata(const ZVPropertyMap& metadata, const ZVString& path)
{
    const auto isThere = [&metadata](const wchar_t* key) { return metadata.IsSet(key); };
    if (path.IsEmpty() || !std::ranges::all_of(RequiredKeys, isThere))
        return false;
    ZVString text;
    metadata.ToXML(text, L"XMLPH", false, 1.0);
    if (!text.SaveToFile(path, UTF8Mode))
        return false;
    ZVFileSystem::SetFileAttributes(ZVFileSystem::GetSavePath(path), ZVFileSystem::AttributesNormal);
    return true;
}
