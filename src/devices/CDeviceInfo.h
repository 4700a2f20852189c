#pragma once

#include "core/property/ZVPropertyMap.h"

#include <cstdint>

// One attached device: what it is, and how the main application stores files on it. It is a property map with names that both
// sides know; the values mean something to the main application only, and keys that are not known here pass through untouched.
class CDeviceInfo : public ZVPropertyMap
{
public:
    // Types of devices that have defaults of their own.
    static constexpr int32_t KeepType = -1;  // the type that the record holds
    static constexpr int32_t TypeWithThumbnails = 2;
    static constexpr int32_t TypeWithTrackNumbers = 3;
    static constexpr int32_t TypeDrive = 4;

    // Names that the enumeration reads and writes.
    static constexpr wchar_t CanonicalName[] = L"CanonicalName";
    static constexpr wchar_t DeviceUID[] = L"DeviceUID";
    static constexpr wchar_t DriveLetter[] = L"DriveLetter";
    static constexpr wchar_t IsDrive[] = L"IsDrive";
    static constexpr wchar_t MainDriveLetter[] = L"MainDriveLetter";
    static constexpr wchar_t PhysicalDriveNumber[] = L"PhysicalDriveNumber";

    // Sets the values that a device of a type starts with, over those that are there.
    void SetDefaults(int32_t deviceType);
    // Gives every folder its closing slash, tidies the list of file types, and with adjustAudioTemplate lets the folder for music
    // follow what SupportsFolders says: with folders by artist and album, by artist alone, or without.
    void NormalizePaths(bool adjustAudioTemplate);

private:
    void AdjustAudioTemplate();
    void NormalizeFileTypes();
};
