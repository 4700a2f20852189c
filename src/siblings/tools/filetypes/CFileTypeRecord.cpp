#include "siblings/tools/filetypes/CFileTypeRecord.h"

#include <cwchar>

namespace
{
constexpr const wchar_t* MediaTypes[] = {L"Video", L"Audio", L"Image", L"Playlist", L"Data"};

// The text of a field, or null if there is no such field.
const wchar_t* FindField(const CFileType& type, const wchar_t* name)
{
    if (wcscmp(name, L"File Type") == 0)
        return type.Extension;
    if (wcscmp(name, L"Media Type") == 0)
        return MediaTypes[static_cast<int32_t>(type.Kind)];
    if (wcscmp(name, L"Content Type") == 0)
        return type.ContentType;
    return nullptr;
}
}

int32_t CFileTypeRecord::GetInt(const wchar_t* name, int32_t defaultValue) const
{
    const bool isVideo = m_type != nullptr && m_type->Kind == CMediaKind::Video;
    return isVideo && wcscmp(name, L"Playback Type") == 0 ? IZVFileTypes::PlaybackVideo : defaultValue;
}

void CFileTypeRecord::GetString(const wchar_t* name, IZVDllString& value) const
{
    const wchar_t* const text = m_type == nullptr ? nullptr : FindField(*m_type, name);
    if (text != nullptr)
        value.SetString(text, -1);
    else
        value.Empty();
}
