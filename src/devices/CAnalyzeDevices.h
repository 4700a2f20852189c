#pragma once

#include "core/containers/ZVArray.h"
#include "core/containers/ZVStringArray.h"
#include "devices/CDeviceInfo.h"

#include <cstdint>

// Tells which portable devices are attached. Two sources know of them: the device protocol, which fills Devices, and the system's
// drives, which fill Drives with records that have IsDrive and DriveLetter. A device that both know becomes one record. On this
// platform neither source exists yet, so none is found.
class CAnalyzeDevices
{
public:
    using DeviceList = ZVArray<CDeviceInfo>;

    // A drive that may be a device, with the folders that it is mounted on.
    struct Candidate
    {
        CDeviceInfo Device;
        ZVStringArray DrivePaths;
    };
    using CandidateList = ZVArray<Candidate>;

    CAnalyzeDevices();

    // Finds the attached devices anew. The text lists devices to leave out, which no source reads so far.
    bool EnumerateDevices(const ZVStringArray& ignored);
    // Merges the drives into the devices. A device of the protocol gets the identity of the drive that it also is; a drive that
    // is no such device, and whose volume can be used, becomes one. Always true.
    bool EnumerateUSBDevices(const ZVStringArray& ignored);
    // Replaces the texts by the XMLPH form of each device that was found, and gives their count.
    int32_t GetDevices(ZVStringArray& out) const;

    // The index of the candidate that is mounted where the device is, with case folded; -1 for none and for a device without a
    // drive.
    static int32_t FindDrive(const CandidateList& list, const CDeviceInfo& device);

    DeviceList Devices;
    DeviceList Drives;

private:
    CandidateList GetCandidates() const;
    void AddUnmatched(Candidate& candidate);
};
