#pragma once

// What the libraries of a process know of the application that loaded them. All texts are NUL-terminated, never null, and stay
// valid as long as the object; a directory ends in "/".
class IZVApplicationInformation
{
public:
    // The product's name, empty when the process has none of its own.
    virtual const wchar_t* GetProductName() = 0;
    // The folder that the program and its libraries run from.
    virtual const wchar_t* GetInstallDirectory() = 0;
    // The folder of the user's data, or empty when the default below the home folder holds.
    virtual const wchar_t* GetDataDirectory() = 0;

protected:
    ~IZVApplicationInformation() = default;
};
