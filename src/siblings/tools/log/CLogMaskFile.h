#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The file "Logs/log-mask" in the data folder: one line with the mask of the log categories that are written, decimal or
// hexadecimal behind "0x". It repeats a setting outside of the settings store, so that a process that starts need not open the
// store for it.
class CLogMaskFile
{
public:
    // An empty data folder is a file that is never there.
    explicit CLogMaskFile(const ZVString& dataFolder);

    // Reads the mask; false when there is no file, or no mask in it.
    bool Read(uint32_t& mask) const;
    // Puts a mask in the place of the old one, in one step for whoever reads at the time. False, and errno, when that fails; the
    // old one stands then.
    bool Write(uint32_t mask) const;
    // Removes the file; true also when it was not there. False, and errno, when it is still there.
    bool Remove() const;

    // Reads a mask from a text; blanks and line ends around it do not count. False, with mask as it was, for anything else than
    // one number of 32 bits.
    static bool Parse(const char* text, uint32_t& mask);

private:
    ZVString m_path;
};
