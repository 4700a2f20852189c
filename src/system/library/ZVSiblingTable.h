#pragma once

#include <cstdint>

// The libraries of the product. They are unloaded from the last to the first.
enum class ZVSibling : int32_t
{
    Tools,
    Image,
    Reader,
    Disc,
    Player,
    WMFactory,
    Television,
};

// How a library is started after its load.
enum class ZVSiblingStart
{
    Tools,      // the entry point returns the tools interface of a version, which is then given the application's information
    Interface,  // the entry point returns an IZVSiblingInterface, which is then initialised
    Function,   // the entry point itself initialises the library; it may be missing
};

// One library of the product.
struct ZVSiblingLibrary
{
    ZVSibling Index;
    const wchar_t* File;
    ZVSiblingStart Start;
    const char* EntryPoint;
    const char* Uninitialize;  // called before the unload, if the library has it; null for none
};

// clang-format off
inline constexpr ZVSiblingLibrary ZVSiblingLibraryTable[] = {
    {ZVSibling::Tools,      L"libZVTools.so",      ZVSiblingStart::Tools,     "GetZVToolsDLL",      nullptr},
    {ZVSibling::Image,      L"libZVImage.so",      ZVSiblingStart::Interface, "GetZVImageAppDLL",   nullptr},
    {ZVSibling::Reader,     L"libZVReader.so",     ZVSiblingStart::Function,  "ZVReaderInitialize", "ZVReaderUninitialize"},
    {ZVSibling::Disc,       L"libZVDisc.so",       ZVSiblingStart::Function,  "ZVDiscInitialize",   "ZVDiscUninitialize"},
    {ZVSibling::Player,     L"libZVPlayer.so",     ZVSiblingStart::Interface, "GetZVPlayerDLL",     nullptr},
    {ZVSibling::WMFactory,  L"libZVWMFactory.so",  ZVSiblingStart::Interface, "CreateZVWMFactory",  nullptr},
    {ZVSibling::Television, L"libZVTelevision.so", ZVSiblingStart::Interface, "GetZVTelevisionDLL", nullptr},
};
// clang-format on

inline constexpr int32_t ZVSiblingCount = static_cast<int32_t>(sizeof ZVSiblingLibraryTable / sizeof *ZVSiblingLibraryTable);

constexpr const ZVSiblingLibrary& GetSiblingLibrary(ZVSibling sibling)
{
    return ZVSiblingLibraryTable[static_cast<int32_t>(sibling)];
}

constexpr bool IsSiblingTableInOrder()
{
    for (int32_t index = 0; index < ZVSiblingCount; ++index)
        if (ZVSiblingLibraryTable[index].Index != static_cast<ZVSibling>(index))
            return false;
    return true;
}
static_assert(IsSiblingTableInOrder());
