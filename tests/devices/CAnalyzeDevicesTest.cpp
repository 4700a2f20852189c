#include "devices/CAnalyzeDevices.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
CDeviceInfo MakeDevice(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> values)
{
    CDeviceInfo device;
    for (const auto& [key, value] : values)
        device.SetString(key, value);
    return device;
}

TEST(CDeviceInfo, SetsTheDefaultsOfItsType)
{
    CDeviceInfo device = MakeDevice({{L"VendorName", L"Old"}, {L"Other", L"kept"}});
    device.SetDefaults(3);
    EXPECT_EQ(device.GetInt(L"DeviceType"), 3);
    EXPECT_TRUE(device.IsSet(L"VendorName"));
    EXPECT_EQ(device.GetString(L"VendorName"), L"");
    EXPECT_EQ(device.GetString(L"Other"), L"kept");
    EXPECT_EQ(device.GetString(L"MatchKeyExpression"),
              L"If(IsEqual([Media Type], Image), Clean([Name], 3)\x1[File Size, 0]\x1, [Name]\x1"
              L"Clean([Artist], 2)\x1[Album]\x1[Genre]\x1TrackNumber()\x1[Media Type]\x1)");
    EXPECT_EQ(device.GetString(L"ChangeKeyExpression"), L"If(IsEqual([Media Type], Image), , [Rating]\x1[Composer]\x1)");
    EXPECT_EQ(device.GetString(L"AudioBasePath"), L"Music/[Album Artist (auto)]\\[Album]\\");
    EXPECT_EQ(device.GetString(L"DatabaseBasePath"), L"");
    EXPECT_EQ(device.GetString(L"SupportedFileTypes"), L"*");
    EXPECT_EQ(device.GetInt(L"SupportsFolders"), -1);
    EXPECT_FALSE(device.IsSet(L"IsDrive"));
    EXPECT_FALSE(device.IsSet(L"SaveVideoThumbnailToFileJPG"));

    CDeviceInfo drive;
    drive.SetDefaults(4);
    EXPECT_EQ(drive.GetInt(L"IsDrive"), 1);
    EXPECT_EQ(drive.GetString(L"MatchKeyExpression"),
              L"If(IsEqual([Media Type], Image), [Name]\x1[File Size, 0]\x1, [Name]\x1"
              L"Clean([Artist], 1)\x1[Album]\x1[Genre]\x1"
              L"FormatNumber([Track #, 0])\x1[Media Type]\x1)");

    CDeviceInfo thumbnails;
    thumbnails.SetDefaults(2);
    EXPECT_EQ(thumbnails.GetInt(L"SaveVideoThumbnailToFileJPG"), 1);
    thumbnails.SetDefaults(-1);
    EXPECT_EQ(thumbnails.GetInt(L"DeviceType"), 2);
    EXPECT_EQ(thumbnails.GetString(L"AudioBasePath"), L"Music/");
}

TEST(CDeviceInfo, NormalizesPathsAndFileTypes)
{
    const struct
    {
        const wchar_t* Key;
        const wchar_t* SupportsFolders;
        const wchar_t* Before;
        const wchar_t* After;
    } cases[] = {
        {L"AudioBasePath", L"1", L"Music", L"Music/[Artist]\\"},
        {L"AudioBasePath", L"1", L"M\\[Album Artist (auto)]\\[Album]\\", L"M\\[Artist]\\"},
        {L"AudioBasePath", L"2", L"M\\[Album Artist (auto)]\\[Album]\\", L"M\\[Album Artist (auto)]\\[Album]\\"},
        {L"AudioBasePath", L"0", L"M\\[Album Artist (auto)]\\[Album]\\", L"M\\"},
        {L"AudioBasePath", L"0", L"Music", L"Music/"},
        {L"VideoBasePath", L"0", L"Video\\", L"Video\\"},
        {L"RootBasePath", L"0", L"Root", L"Root"},
        {L"PlaylistBasePath", L"0", L"no_playlists\\", L"NO_PLAYLISTS"},
        {L"PlaylistBasePath", L"0", L"NO_PLAYLISTS", L"NO_PLAYLISTS"},
        {L"SupportedFileTypes", L"0", L"mp3|wma,flac;mp3", L"mp3;wma;flac"},
        {L"SupportedFileTypes", L"0", L"mp3,*;wma", L"*"},
    };
    for (const auto& row : cases)
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(row.Before)) + " of " + testing::PrintToString(std::wstring(row.Key)));
        CDeviceInfo device = MakeDevice({{L"SupportsFolders", row.SupportsFolders}, {row.Key, row.Before}});
        device.NormalizePaths(true);
        EXPECT_EQ(device.GetString(row.Key), row.After);
    }
}

TEST(CAnalyzeDevices, MergesDrivesIntoDevices)
{
    CAnalyzeDevices analysis;
    analysis.Devices.Add(MakeDevice({{L"IsDrive", L"1"}, {L"DriveLetter", L"/TMP/"}, {L"DeviceName", L"by protocol"}}));
    analysis.Devices.Add(MakeDevice({{L"DeviceName", L"no drive"}, {L"DriveLetter", L"/tmp/"}}));
    analysis.Drives.Add(MakeDevice({{L"IsDrive", L"1"}, {L"DriveLetter", L"/tmp"}, {L"DeviceName", L"100% player"}, {L"VendorID", L"7"}}));
    analysis.Drives.Add(MakeDevice({{L"DriveLetter", L"/"}, {L"DeviceName", L"not a drive"}}));
    analysis.Drives.Add(MakeDevice({{L"IsDrive", L"1"}, {L"DriveLetter", L"/no/such/folder"}}));
    EXPECT_TRUE(analysis.EnumerateUSBDevices({}));

    ASSERT_EQ(analysis.Devices.GetCount(), 2);
    const CDeviceInfo& merged = analysis.Devices[0];
    EXPECT_EQ(merged.GetString(L"DeviceName"), L"100% player");
    EXPECT_EQ(merged.GetString(L"VendorID"), L"7");
    EXPECT_EQ(merged.GetInt(L"PhysicalDriveNumber"), -1);
    EXPECT_EQ(merged.GetString(L"MainDriveLetter"), L"/tmp/");
    EXPECT_EQ(analysis.Devices[1].GetString(L"DeviceName"), L"no drive");

    ZVStringArray texts;
    EXPECT_EQ(analysis.GetDevices(texts), 2);
    CDeviceInfo read;
    EXPECT_TRUE(read.FromXML(texts[0], L"XMLPH", 1.0));
    EXPECT_TRUE(read.IsEqual(merged));
}

TEST(CAnalyzeDevices, AddsADriveThatNoProtocolKnows)
{
    CAnalyzeDevices analysis;
    analysis.Drives.Add(MakeDevice({{L"IsDrive", L"1"}, {L"DriveLetter", L"/"}, {L"DeviceUID", L"uid"}, {L"DeviceType", L"3"}}));
    EXPECT_TRUE(analysis.EnumerateUSBDevices({}));
    if (analysis.Devices.GetCount() == 0)
        GTEST_SKIP() << "the root folder of this machine is no volume";
    const CDeviceInfo& device = analysis.Devices[0];
    EXPECT_EQ(device.GetString(L"DriveLetter"), L"/");
    EXPECT_EQ(device.GetString(L"MainDriveLetter"), L"/");
    EXPECT_EQ(device.GetString(L"CanonicalName"), L"uid");
    EXPECT_EQ(device.GetInt(L"DeviceType"), 3);
    EXPECT_EQ(device.GetString(L"AudioBasePath"), L"Music/");

    EXPECT_TRUE(analysis.EnumerateDevices({}));
    EXPECT_EQ(analysis.Devices.GetCount(), 0);
}
}
