#pragma once

#include <cstdint>

// One optional component. A component without a package is an external tool that is found by its name alone.
struct ZVComponent
{
    int32_t Number;
    const wchar_t* Package;  // the stem of its folder and of its archive
    const wchar_t* DisplayName;
    const wchar_t* MainFile;  // within its folder
    const wchar_t* Version;
    const wchar_t* Archive;  // the archive's extension

    bool HasPackage() const { return *Package != L'\0'; }
};

// The components that the product knows, by number. A generic number stands for the form of this platform.
namespace ZVComponentTable
{
// The number of this platform's form, or the number itself when it has none.
int32_t Map(int32_t number);
// True for the numbers, generic or mapped, of which only one version is kept.
bool KeepsOneVersion(int32_t number);
// The row of a mapped number; null for an unknown one.
const ZVComponent* Find(int32_t number);
}
