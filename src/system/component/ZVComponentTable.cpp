#include "system/component/ZVComponentTable.h"

namespace
{
struct PlatformForm
{
    int32_t Generic;
    int32_t Platform;
};

// What generic numbers stand for on 64-bit Linux. Of these only one version is kept.
constexpr PlatformForm PlatformForms[] = {
    {1,  38},
    {3,  35},
    {4,  34},
    {5,  42},
    {15, 37},
    {23, 47},
    {24, 49},
    {26, 53}
};

// The names of packages are keys on the server and in folder names, and the numbers are keys in the settings.
// clang-format off
constexpr ZVComponent Components[] = {
    {0,  L"",                        L"",                       L"",                       L"9",  L""},
    {1,  L"mp3_encoder",             L"MP3 Encoder",            L"lame.exe",               L"2",  L".zip"},
    {2,  L"",                        L"",                       L"mpcenc",                 L"",   L""},
    {3,  L"",                        L"",                       L"oggenc",                 L"",   L""},
    {4,  L"",                        L"",                       L"gogo.exe",               L"",   L""},
    {5,  L"chromium",                L"Chromium",               L"libcef.dll",             L"19", L".tar.xz"},
    {6,  L"chromium64",              L"Chromium",               L"libcef.dll",             L"19", L".tar.xz"},
    {7,  L"lav64",                   L"LAV Splitter",           L"LAVSplitter.ax",         L"73", L".tar.xz"},
    {8,  L"lav64",                   L"LAV Audio Decoder",      L"LAVAudio.ax",            L"73", L".tar.xz"},
    {9,  L"lav64",                   L"LAV Video Decoder",      L"LAVVideo.ax",            L"73", L".tar.xz"},
    {10, L"lav",                     L"LAV Splitter",           L"LAVSplitter.ax",         L"73", L".tar.xz"},
    {11, L"lav",                     L"LAV Audio Decoder",      L"LAVAudio.ax",            L"73", L".tar.xz"},
    {12, L"lav",                     L"LAV Video Decoder",      L"LAVVideo.ax",            L"73", L".tar.xz"},
    {13, L"madvr",                   L"madVR Video Renderer",   L"madVR64.ax",             L"40", L".tar.xz"},
    {14, L"madvr_profiles",          L"madVR Profiles",         L"medium.bin",             L"2",  L".zip"},
    {15, L"avcodec",                 L"AVCodec",                L"avcodec-zv-61.dll",      L"25", L".tar.xz"},
    {16, L"avcodec64",               L"AVCodec",                L"avcodec-zv-61.dll",      L"25", L".tar.xz"},
    {17, L"mc2xml",                  L"mc2xml",                 L"mc2xml.dat",             L"3",  L".zip"},
    {18, L"aac_encoder",             L"AAC External Encoder",   L"qaac.exe",               L"3",  L".zip"},
    {19, L"libbluray",               L"libbluray",              L"libbluray-2.dll",        L"11", L".tar.xz"},
    {20, L"libbluray64",             L"libbluray",              L"libbluray-2.dll",        L"11", L".tar.xz"},
    {21, L"java",                    L"Java",                   L"bin\\client\\jvm.dll",   L"3",  L".tar.xz"},
    {22, L"java64",                  L"Java",                   L"bin\\server\\jvm.dll",   L"3",  L".tar.xz"},
    {23, L"youtube-dl",              L"YouTube Downloader",     L"yt-dlp.exe",             L"10", L".tar.xz"},
    {24, L"libass",                  L"LibASS",                 L"libass-9.dll",           L"3",  L".tar.xz"},
    {25, L"libass64",                L"LibASS",                 L"libass-9.dll",           L"3",  L".tar.xz"},
    {26, L"libplacebo64",            L"libplacebo renderer",    L"libplacebo-349.dll",     L"18", L".tar.xz"},
    {27, L"libplacebo64",            L"libplacebo renderer",    L"libplacebo-349.dll",     L"18", L".tar.xz"},
    {28, L"mac_mp3_encoder",         L"MP3 Encoder",            L"lame",                   L"3",  L".zip"},
    {29, L"mac_avcodec",             L"AVCodec",                L"libavcodec-zv.61.dylib", L"22", L".tar.xz"},
    {30, L"mac_youtube-dl",          L"YouTube Downloader",     L"yt-dlp",                 L"8",  L".tar.xz"},
    {31, L"mac_libass",              L"LibASS",                 L"libass.9.dylib",         L"3",  L".tar.xz"},
    {32, L"nf-cadmium",              L"Netflix Cadmium Player", L"cadmium-playercore.js",  L"17", L".tar.xz"},
    {33, L"linux_mp3_encoder",       L"MP3 Encoder",            L"lame",                   L"1",  L".zip"},
    {34, L"",                        L"",                       L"gogo.exe",               L"",   L""},
    {35, L"",                        L"",                       L"oggenc",                 L"",   L""},
    {36, L"linux_avcodec",           L"AVCodec",                L"libavcodec-zv.so.61",    L"17", L".tar.xz"},
    {37, L"linux_avcodec64",         L"AVCodec",                L"libavcodec-zv.so.61",    L"17", L".tar.xz"},
    {38, L"linux_mp3_encoder64",     L"MP3 Encoder",            L"lame",                   L"1",  L".zip"},
    {39, L"linux_mp3_encoder_arm",   L"MP3 Encoder",            L"lame",                   L"1",  L".zip"},
    {40, L"linux_avcodec_arm",       L"AVCodec",                L"libavcodec-zv.so.61",    L"17", L".tar.xz"},
    {41, L"linux_chromium",          L"Chromium",               L"libcef.so",              L"10", L".tar.xz"},
    {42, L"linux_chromium64",        L"Chromium",               L"libcef.so",              L"10", L".tar.xz"},
    {43, L"linux_chromium_arm",      L"Chromium",               L"libcef.so",              L"10", L".tar.xz"},
    {44, L"linux_chromium_arm64",    L"Chromium",               L"libcef.so",              L"10", L".tar.xz"},
    {45, L"linux_mp3_encoder_arm64", L"MP3 Encoder",            L"lame",                   L"1",  L".zip"},
    {46, L"linux_avcodec_arm64",     L"AVCodec",                L"libavcodec-zv.so.61",    L"17", L".tar.xz"},
    {47, L"linux_youtube-dl",        L"YouTube Downloader",     L"yt-dlp",                 L"8",  L".tar.xz"},
    {48, L"linux_libass",            L"LibASS",                 L"libass.so.9",            L"3",  L".tar.xz"},
    {49, L"linux_libass64",          L"LibASS",                 L"libass.so.9",            L"3",  L".tar.xz"},
    {50, L"linux_libass_arm",        L"LibASS",                 L"libass.so.9",            L"3",  L".tar.xz"},
    {51, L"linux_libass_arm64",      L"LibASS",                 L"libass.so.9",            L"3",  L".tar.xz"},
    {52, L"linux_libplacebo",        L"libplacebo renderer",    L"libplacebo.so.349",      L"16", L".tar.xz"},
    {53, L"linux_libplacebo64",      L"libplacebo renderer",    L"libplacebo.so.349",      L"16", L".tar.xz"},
    {54, L"linux_libplacebo_arm",    L"libplacebo renderer",    L"libplacebo.so.349",      L"16", L".tar.xz"},
    {55, L"linux_libplacebo_arm64",  L"libplacebo renderer",    L"libplacebo.so.349",      L"16", L".tar.xz"},
    {56, L"mac_libplacebo",          L"libplacebo renderer",    L"libplacebo.349.dylib",   L"16", L".zip"},
};
// clang-format on
}

int32_t ZVComponentTable::Map(int32_t number)
{
    for (const PlatformForm& form : PlatformForms)
        if (form.Generic == number)
            return form.Platform;
    return number;
}

bool ZVComponentTable::KeepsOneVersion(int32_t number)
{
    for (const PlatformForm& form : PlatformForms)
        if (form.Generic == number || form.Platform == number)
            return true;
    return false;
}

const ZVComponent* ZVComponentTable::Find(int32_t number)
{
    for (const ZVComponent& component : Components)
        if (component.Number == number)
            return &component;
    return nullptr;
}
