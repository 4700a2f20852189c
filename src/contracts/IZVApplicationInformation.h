#pragma once

// What the libraries of a process know about the application that loaded them. All texts are NUL-terminated, never null, and
// valid as long as the object; a directory ends in "/".
class IZVApplicationInformation
{
public:
    // The product's name, empty if the process has none.
    virtual const wchar_t* GetProductName() = 0;
    // The folder from which the program and its libraries run.
    virtual const wchar_t* GetInstallDirectory() = 0;
    // The folder of the user's data, or empty for the default below the home folder.
    virtual const wchar_t* GetDataDirectory() = 0;

protected:
    ~IZVApplicationInformation() = default;
};
