#pragma once

#include "core/containers/ZVStringArray.h"

// A command that was found among the arguments.
struct ZVCommandMatch
{
    ZVString Command;          // as it was typed
    ZVStringArray Parameters;  // all arguments behind it

    // A parameter, or the empty string for one that is missing.
    ZVString GetParameter(int32_t index) const
    {
        return index >= 0 && index < Parameters.GetCount() ? Parameters[index] : ZVString();
    }

    void Clear()
    {
        Command.Empty();
        Parameters.RemoveAll();
    }
};
