#pragma once

#include "contracts/IZVSiblingInterface.h"

#include <cstdint>

// A Display of libX11.
struct _XDisplay;

// A rectangle of whole pixels on the screen. Right and bottom are the first column and row outside it.
struct ZVScreenRect
{
    int32_t Left = 0;
    int32_t Top = 0;
    int32_t Right = 0;
    int32_t Bottom = 0;
};

// The window manager's side of the screen. May be called from any thread.
class IZVWMFactory : public IZVSiblingInterface
{
public:
    // How long an X server may take to answer before it counts as one that never will, in milliseconds.
    static constexpr int32_t PatienceMilliseconds = 10'000;

    // The conversion mode of a monitor's rectangle.
    static constexpr int32_t ModeMonitor = 2;

    // The connection to the X server that the environment variable DISPLAY names, which the first call opens. It lasts as long as
    // the process and is one for all callers, who see to it that one of them uses it at a time. Null, with the reason in the log
    // of the first call, when there is no server or it does not answer within PatienceMilliseconds.
    virtual _XDisplay* GetDisplay() = 0;
    // Converts a rectangle of the server's pixels into the pixels that callers count in. The two are the same on this platform,
    // in every mode.
    virtual ZVScreenRect ConvertRect(const ZVScreenRect& rect, int32_t mode) const = 0;

protected:
    ~IZVWMFactory() = default;
};
