#pragma once

#include "contracts/IZVDllString.h"

// The settings that all processes of the product share: texts by section and name, which are compared exactly. No argument may be
// null. May be called from any thread; nothing throws. A store that cannot be opened reads as empty and refuses every change.
class IZVSettings
{
public:
    // Reads a setting; false, with an empty value, if it is not there.
    virtual bool GetSetting(const wchar_t* section, const wchar_t* name, IZVDllString& value) = 0;
    // Writes a setting; false if it could not be stored.
    virtual bool SetSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) = 0;
    // Removes a setting; also true if it was not there.
    virtual bool RemoveSetting(const wchar_t* section, const wchar_t* name) = 0;

protected:
    ~IZVSettings() = default;
};
