#pragma once

#include "core/containers/ZVArray.h"
#include "core/containers/ZVStringArray.h"
#include "devices/CDeviceInfo.h"

#include <cstdint>

// Finds the portable devices that are attached. There are two sources: the device protocol fills Devices, and the system's drives
// fill Drives with records that have IsDrive and DriveLetter. A device that both sources know becomes one record. On this
// platform neither source exists yet, so no device is found.
class CAnalyzeDevices
{
public:
    using DeviceList = ZVArray<CDeviceInfo>;

    // A drive that may be a device, with the folders where it is mounted.
    struct Candidate
    {
        CDeviceInfo Device;
        ZVStringArray DrivePaths;
    };
    using CandidateList = ZVArray<Candidate>;

    CAnalyzeDevices();

    // Empties both lists and finds the attached devices. ignored lists devices to leave out; no source reads it yet.
    bool EnumerateDevices(const ZVStringArray& ignored);
    // Merges the drives into the devices. A device of the protocol that is also a drive gets the identity of that drive. Any
    // other drive becomes a device if its volume can be used. Always true.
    bool EnumerateUSBDevices(const ZVStringArray& ignored);
    // Sets out to the XMLPH form of each device that was found, and returns how many there are.
    int32_t GetDevices(ZVStringArray& out) const;

    // The index of the candidate that is mounted where the device is, compared ignoring case; -1 if there is none, or if the
    // device has no drive.
    static int32_t FindDrive(const CandidateList& list, const CDeviceInfo& device);

    DeviceList Devices;
    DeviceList Drives;

private:
    CandidateList GetCandidates() const;
    void AddUnmatched(Candidate& candidate);
};
