#include "devices/CAnalyzeDevices.h"

#include <gtest/gtest.h>

namespace
{
// A device with entries "key=value" between semicolons.
CDeviceInfo MakeDevice(const wchar_t* values)
{
    ZVStringArray entries;
    CDeviceInfo device;
    entries.SetSplit(values, L';');
    for (const ZVString& entry : entries)
        device.SetString(entry.GetBefore(L"="), entry.GetAfterLast(L"="));
    return device;
}

TEST(CDeviceInfo, NormalizesPathsAndFileTypes)
{
    const auto normalize = [](const wchar_t* supportsFolders, const wchar_t* key, const wchar_t* value)
    {
        CDeviceInfo device;
        device.SetString(L"SupportsFolders", supportsFolders);
        device.SetString(key, value);
        device.NormalizePaths(true);
        return device.GetString(key);
    };
    const wchar_t album[] = L"M\\[Album Artist (auto)]\\[Album]\\";
    EXPECT_STREQ(normalize(L"1", L"AudioBasePath", L"Music"), L"Music/[Artist]\\");
    EXPECT_STREQ(normalize(L"1", L"AudioBasePath", album), L"M\\[Artist]\\");
    EXPECT_STREQ(normalize(L"0", L"AudioBasePath", album), L"M\\");
    EXPECT_STREQ(normalize(L"0", L"VideoBasePath", L"Video"), L"Video/");
    EXPECT_STREQ(normalize(L"0", L"PlaylistBasePath", L"no_playlists\\"), L"NO_PLAYLISTS");
    EXPECT_STREQ(normalize(L"0", L"SupportedFileTypes", L"mp3|wma,flac;mp3"), L"mp3;wma;flac");
    EXPECT_STREQ(normalize(L"0", L"SupportedFileTypes", L"*,mp3;wma"), L"*");
}

TEST(CAnalyzeDevices, MergesDrivesIntoDevices)
{
    CAnalyzeDevices analysis;
    analysis.Devices.Add(MakeDevice(L"IsDrive=1;DriveLetter=/TMP/;DeviceName=by protocol"));
    analysis.Devices.Add(MakeDevice(L"DeviceName=no drive;DriveLetter=/tmp/"));
    analysis.Devices.Add(MakeDevice(L"IsDrive=1;DeviceName=no letter"));
    analysis.Drives.Add(MakeDevice(L"IsDrive=1;DriveLetter=/tmp;DeviceName=100%"));
    analysis.Drives.Add(MakeDevice(L"DriveLetter=/;DeviceName=not a drive"));
    analysis.Drives.Add(MakeDevice(L"IsDrive=1;DriveLetter=/no/such/folder"));
    EXPECT_TRUE(analysis.EnumerateUSBDevices({}));

    ASSERT_EQ(analysis.Devices.GetCount(), 3);
    const CDeviceInfo& merged = analysis.Devices[0];
    EXPECT_STREQ(merged.GetString(L"DeviceName"), L"100%");
    EXPECT_EQ(merged.GetInt(L"PhysicalDriveNumber"), -1);
    EXPECT_STREQ(merged.GetString(L"MainDriveLetter"), L"/tmp/");
    EXPECT_STREQ(analysis.Devices[1].GetString(L"DeviceName"), L"no drive");
    EXPECT_STREQ(analysis.Devices[2].GetString(L"DeviceName"), L"no letter");

    ZVStringArray texts;
    EXPECT_EQ(analysis.GetDevices(texts), 3);
    CDeviceInfo read;
    EXPECT_TRUE(read.FromXML(texts[0], L"XMLPH", 1.0));
    EXPECT_TRUE(read.IsEqual(merged));
}

TEST(CAnalyzeDevices, AddsADriveThatNoProtocolKnows)
{
    CAnalyzeDevices analysis;
    analysis.Drives.Add(MakeDevice(L"IsDrive=1;DriveLetter=/;DeviceUID=uid;DeviceType=3"));
    EXPECT_TRUE(analysis.EnumerateUSBDevices({}));
    if (analysis.Devices.GetCount() == 0)
        GTEST_SKIP() << "the root folder of this machine is not a volume";
    EXPECT_STREQ(analysis.Devices[0].GetString(L"CanonicalName"), L"uid");
    EXPECT_STREQ(analysis.Devices[0].GetString(L"AudioBasePath"), L"Music/");
}
}
