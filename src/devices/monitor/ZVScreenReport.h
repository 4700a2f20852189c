#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// A Display of libX11.
struct _XDisplay;

// An output of an X server that shows a part of its screen, in pixels.
struct ZVScreenOutput
{
    std::string Name;  // such as "HDMI-1", in UTF-8
    int32_t X = 0;
    int32_t Y = 0;
    int32_t Width = 0;
    int32_t Height = 0;
    int32_t Mode = 0;        // the server's number of the mode that is set
    double RefreshRate = 0;  // in Hz; 0 when unknown
};

// What an X server does not tell of an output.
struct ZVScreenFailure
{
    uint64_t Output = 0;    // the server's number of the output
    int32_t ErrorCode = 0;  // of X; 0 when libXrandr itself gave up
};

// What an X server tells of its default screen.
struct ZVScreenReport
{
    std::vector<ZVScreenOutput> Outputs;  // in the server's order
    std::vector<ZVScreenFailure> Failures;
    int32_t Width = 0;
    int32_t Height = 0;

    // Asks a server. A server without the extension XRandR has no outputs. Null, with the reason in the log, when the libraries for
    // it are missing, or when the server does not answer in time or breaks the connection: nobody may use the display after that,
    // and the answer stays null.
    static std::shared_ptr<const ZVScreenReport> Ask(_XDisplay* display);
};
