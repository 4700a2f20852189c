#pragma once

#include "core/containers/ZVStringArray.h"

// A command that was found among the arguments.
struct ZVCommandMatch
{
    ZVString Command;          // as it was typed
    ZVStringArray Parameters;  // all arguments after it
    ZVStringArray Paths;       // the same as paths, see GetPath

    // A parameter, or the empty string for one that is missing.
    ZVString GetParameter(int32_t index) const
    {
        return index >= 0 && index < Parameters.GetCount() ? Parameters[index] : ZVString();
    }

    // A parameter that is a path. Its text keeps every byte that was given, while that of GetParameter has lost those that are
    // no characters of the product: a film may have any name.
    ZVString GetPath(int32_t index) const { return index >= 0 && index < Paths.GetCount() ? Paths[index] : ZVString(); }

    void Clear()
    {
        Command.Empty();
        Parameters.RemoveAll();
        Paths.RemoveAll();
    }
};
