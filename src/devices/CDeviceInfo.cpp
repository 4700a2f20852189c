#include "devices/CDeviceInfo.h"

#include "core/containers/ZVStringArray.h"

namespace
{
constexpr int32_t AnyType = -1;

// Expressions of the main application, in which character 1 separates the parts.
constexpr wchar_t MatchKey[] = L"If(IsEqual([Media Type], Image), [Name]\1[File Size, 0]\1, "
                               L"[Name]\1Clean([Artist], 1)\1[Album]\1[Genre]\1FormatNumber([Track #, 0])\1[Media Type]\1)";
constexpr wchar_t MatchKeyWithTrackNumbers[] = L"If(IsEqual([Media Type], Image), Clean([Name], 3)\1[File Size, 0]\1, "
                                               L"[Name]\1Clean([Artist], 2)\1[Album]\1[Genre]\1TrackNumber()\1[Media Type]\1)";
constexpr wchar_t ChangeKeyWithTrackNumbers[] = L"If(IsEqual([Media Type], Image), , [Rating]\1[Composer]\1)";

struct Default
{
    const wchar_t* Key;
    const wchar_t* Value;
    int32_t DeviceType;  // the type that gets the value; a later row replaces an earlier one
};

// clang-format off
constexpr Default Defaults[] = {
    {L"VendorName",                  L"",                       AnyType},
    {L"InstallURL",                  L"",                       AnyType},
    {L"SupportedFileTypes",          L"*",                      AnyType},
    {L"SearchEntireDevice",          L"0",                      AnyType},
    {L"RootBasePath",                L"",                       AnyType},
    {L"AudioBasePath",               L"Music/",                 AnyType},
    {L"ImageBasePath",               L"Images/",                AnyType},
    {L"VideoBasePath",               L"Video/",                 AnyType},
    {L"DataBasePath",                L"Data/",                  AnyType},
    {L"DatabaseBasePath",            L"",                       AnyType},
    {L"AudibleBasePath",             L"Audible/",               AnyType},
    {L"PlaylistBasePath",            L"Playlists/",             AnyType},
    {L"PlaylistFormat",              L"0",                      AnyType},
    {L"MatchKeyExpression",          MatchKey,                  AnyType},
    {L"MatchKeyExpression",          MatchKeyWithTrackNumbers,  CDeviceInfo::TypeWithTrackNumbers},
    {L"ChangeKeyExpression",         L"",                       AnyType},
    {L"ChangeKeyExpression",         ChangeKeyWithTrackNumbers, CDeviceInfo::TypeWithTrackNumbers},
    {L"ResyncIfDateModified",        L"1",                      AnyType},
    {L"AlwaysPumpCOMMessages",       L"0",                      AnyType},
    {L"SupportsFolders",             L"-1",                     AnyType},
    {L"AlbumArtEnabled",             L"1",                      AnyType},
    {L"GetPlayStatsFromDevice",      L"0",                      AnyType},
    {L"SaveVideoThumbnailToFileJPG", L"1",                      CDeviceInfo::TypeWithThumbnails},
    {CDeviceInfo::IsDrive,           L"1",                      CDeviceInfo::TypeDrive},
};
// clang-format on

constexpr const wchar_t* Folders[] = {L"AudioBasePath",    L"ImageBasePath",   L"VideoBasePath",   L"DataBasePath",
                                      L"DatabaseBasePath", L"AudibleBasePath", L"PlaylistBasePath"};

constexpr wchar_t AudioFolder[] = L"AudioBasePath";
constexpr wchar_t PlaylistFolder[] = L"PlaylistBasePath";
constexpr wchar_t FileTypes[] = L"SupportedFileTypes";

// Templates of the main application, which writes paths on devices with backslashes.
constexpr wchar_t ArtistAndAlbum[] = L"[Album Artist (auto)]\\[Album]\\";
constexpr wchar_t Artist[] = L"[Artist]\\";

constexpr wchar_t NoPlaylists[] = L"NO_PLAYLISTS";

// A folder may end with either separator. The empty path is the device itself and stays empty.
ZVString WithSlash(const ZVString& path)
{
    return path.IsEmpty() || path.EndsWith(L'/') || path.EndsWith(L'\\') ? path : path + L"/";
}
}

void CDeviceInfo::SetDefaults(int32_t deviceType)
{
    const int32_t type = deviceType == KeepType ? GetInt(L"DeviceType", KeepType) : deviceType;
    SetInt(L"DeviceType", type);
    for (const Default& value : Defaults)
        if (value.DeviceType == AnyType || value.DeviceType == type)
            SetString(value.Key, value.Value);
    NormalizePaths(deviceType != KeepType);
}

void CDeviceInfo::NormalizePaths(bool adjustAudioTemplate)
{
    if (adjustAudioTemplate)
        AdjustAudioTemplate();
    for (const wchar_t* folder : Folders)
        SetString(folder, WithSlash(GetString(folder)));
    NormalizeFileTypes();

    // This value is not a folder, so it has no slash.
    ZVString playlists = GetString(PlaylistFolder);
    playlists.TrimRight(L"/\\");
    if (playlists.IsEqual(NoPlaylists, false))
        SetString(PlaylistFolder, NoPlaylists);
}

void CDeviceInfo::AdjustAudioTemplate()
{
    const int32_t supportsFolders = GetInt(L"SupportsFolders");
    ZVString path = GetString(AudioFolder);
    const bool hasTemplate = path.Find(ArtistAndAlbum) >= 0;
    if (supportsFolders != 0 && !hasTemplate)
        path = WithSlash(path) + ArtistAndAlbum;
    if (supportsFolders == 0 && hasTemplate)
        path.RemoveText(ArtistAndAlbum);
    if (supportsFolders == 1)
        path.Replace(ArtistAndAlbum, Artist);
    SetString(AudioFolder, path);
}

void CDeviceInfo::NormalizeFileTypes()
{
    ZVString text = GetString(FileTypes);
    text.Replace(L"|", L";");
    text.Replace(L",", L";");
    ZVStringArray parts;
    parts.SetSplit(text, L';');
    ZVStringArray types;
    for (const ZVString& part : parts)
        if (types.FindText(part, false) < 0)
            types.Add(part);
    SetString(FileTypes, types.FindText(L"*") >= 0 ? ZVString(L"*") : types.GetJoined(L";"));
}
