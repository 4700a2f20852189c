#pragma once

#include "contracts/IZVDllString.h"

// The settings that all processes of the product share: texts by section and name, which are compared exactly. No text given is
// null. May be called from any thread; no exception comes out. A store that cannot be opened reads as empty and refuses what is
// written.
class IZVSettings
{
public:
    // Reads a setting; false, and an empty value, when it is not there.
    virtual bool GetSetting(const wchar_t* section, const wchar_t* name, IZVDllString& value) = 0;
    // Writes a setting; false when it could not be stored.
    virtual bool SetSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) = 0;
    // Removes a setting; true also when it was not there.
    virtual bool RemoveSetting(const wchar_t* section, const wchar_t* name) = 0;

protected:
    ~IZVSettings() = default;
};
