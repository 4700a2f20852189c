#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The file "Logs/log-mask" in the data folder: one line with the mask of the log categories that are written, as a decimal or 0x
// number. It repeats a setting outside of the settings store, so that a process need not open the store at its start.
class CLogMaskFile
{
public:
    // With an empty data folder the file never exists.
    explicit CLogMaskFile(const ZVString& dataFolder);

    // Reads the mask; false when there is no file, or no mask in it.
    bool Read(uint32_t& mask) const;
    // Replaces the mask in one step, so that a reader sees the old one or the new one. False, with errno, when that fails; the
    // old one then stays.
    bool Write(uint32_t mask) const;
    // Removes the file; true also when there was none. False, with errno, when it is still there.
    bool Remove() const;

    // Reads a mask from a text, ignoring blanks and line ends around it. False for anything but a single number of 32 bits; mask
    // then stays as it was.
    static bool Parse(const char* text, uint32_t& mask);

private:
    ZVString m_path;
};
