#pragma once

#include "core/containers/ZVArray.h"
#include "core/containers/ZVNumberArray.h"
#include "core/geometry/ZVRect.h"

struct ZVScreenReport;

// One monitor: what an output of the X server shows.
struct sMonitorInfo
{
    ZVRect Rect;  // in pixels of the server's screen
    ZVString Name;
    ZVString Id;
    double RefreshRate = 0;  // in Hz; 0 when unknown
};

// The active monitors, numbered from 0 in the order of the X server, and one of them that is selected. Belongs to one thread.
class ZVMonitor
{
public:
    // Enumerates the monitors and selects one. A number that none of them has selects the first.
    explicit ZVMonitor(int32_t index);

    // Enumerates the monitors anew and selects the first. A server that tells of no monitor has one, which is its whole screen.
    // False, with the reason in the log and without any monitor, when there is no server to ask.
    bool UpdateInfo();

    // Selects a monitor. False for a number that none of them has; the selection is then what it was.
    bool SetMonitor(int32_t index);

    // The rectangle of the selected monitor, in the pixels that windows are placed in; empty without any monitor.
    ZVRect GetRect() const;

    // The name of the selected monitor for the user and the one for the settings. Who has none gets one made of its number.
    void GetNames(ZVString& name, ZVString& id) const;

    int32_t Current = 0;
    ZVNumberArray<int32_t> Indexes;  // each is its own place
    ZVArray<sMonitorInfo> Monitors;

private:
    bool HasCurrent() const { return Current >= 0 && Current < Monitors.GetCount(); }
    void Add(const sMonitorInfo& monitor);
};
