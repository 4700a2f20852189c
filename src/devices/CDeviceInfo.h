#pragma once

#include "core/property/ZVPropertyMap.h"

#include <cstdint>

// An attached device: what it is, and how the main application stores files on it. It is a property map with names that both
// sides know. Only the main application understands the values, and names that are not known here are passed on unchanged.
class CDeviceInfo : public ZVPropertyMap
{
public:
    // Types of devices with defaults of their own.
    static constexpr int32_t KeepType = -1;  // the type that is already in the record
    static constexpr int32_t TypeWithThumbnails = 2;
    static constexpr int32_t TypeWithTrackNumbers = 3;
    static constexpr int32_t TypeDrive = 4;

    // Names that CAnalyzeDevices reads and writes.
    static constexpr wchar_t CanonicalName[] = L"CanonicalName";
    static constexpr wchar_t DeviceUID[] = L"DeviceUID";
    static constexpr wchar_t DriveLetter[] = L"DriveLetter";
    static constexpr wchar_t IsDrive[] = L"IsDrive";
    static constexpr wchar_t MainDriveLetter[] = L"MainDriveLetter";
    static constexpr wchar_t PhysicalDriveNumber[] = L"PhysicalDriveNumber";

    // Sets the values with which a device of a type starts, and replaces those that are there.
    void SetDefaults(int32_t deviceType);
    // Adds the slash at the end of every folder and tidies the list of file types. With adjustAudioTemplate the folder for music
    // follows SupportsFolders: with folders for artist and album, for the artist only, or without.
    void NormalizePaths(bool adjustAudioTemplate);

private:
    void AdjustAudioTemplate();
    void NormalizeFileTypes();
};
