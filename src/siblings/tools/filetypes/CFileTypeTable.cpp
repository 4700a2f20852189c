#include "siblings/tools/filetypes/CFileTypeTable.h"

namespace
{
using enum CMediaKind;

constexpr int8_t Mp4 = IZVFileTypes::ClassMp4;
constexpr int8_t Plain = IZVFileTypes::ClassPlainMedia;
constexpr int8_t None = 0;

// Content types are those registered with IANA, or otherwise the ones in common use.
// clang-format off
constexpr CFileType Table[] = {
    {L"3g2",      Video,    Mp4,   L"video/3gpp2"},
    {L"3gp",      Video,    Mp4,   L"video/3gpp"},
    {L"3gp2",     Video,    Mp4,   L"video/3gpp2"},
    {L"3gpp",     Video,    Mp4,   L"video/3gpp"},
    {L"f4a",      Audio,    Mp4,   L"audio/mp4"},
    {L"f4b",      Audio,    Mp4,   L"audio/mp4"},
    {L"f4v",      Video,    Mp4,   L"video/mp4"},
    {L"ismv",     Video,    Mp4,   L"video/mp4"},
    {L"k3g",      Video,    Mp4,   L"video/3gpp"},
    {L"m4a",      Audio,    Mp4,   L"audio/mp4"},
    {L"m4b",      Audio,    Mp4,   L"audio/mp4"},
    {L"m4p",      Audio,    Mp4,   L"audio/mp4"},
    {L"m4r",      Audio,    Mp4,   L"audio/mp4"},
    {L"m4v",      Video,    Mp4,   L"video/x-m4v"},
    {L"mov",      Video,    Mp4,   L"video/quicktime"},
    {L"mp4",      Video,    Mp4,   L"video/mp4"},
    {L"mp4v",     Video,    Mp4,   L"video/mp4"},
    {L"qt",       Video,    Mp4,   L"video/quicktime"},

    {L"asf",      Video,    Plain, L"video/x-ms-asf"},
    {L"avi",      Video,    Plain, L"video/x-msvideo"},
    {L"bdmv",     Video,    Plain, L""},
    {L"bdmv3d",   Video,    Plain, L""},
    {L"bluray",   Video,    Plain, L""},
    {L"bluray3d", Video,    Plain, L""},
    {L"divx",     Video,    Plain, L"video/x-msvideo"},
    {L"dv",       Video,    Plain, L"video/x-dv"},
    {L"dvr-ms",   Video,    Plain, L"video/x-ms-dvr"},
    {L"flv",      Video,    Plain, L"video/x-flv"},
    {L"ifo",      Video,    Plain, L""},
    {L"ivf",      Video,    Plain, L"video/x-ivf"},
    {L"m1v",      Video,    Plain, L"video/mpeg"},
    {L"m2t",      Video,    Plain, L"video/mp2t"},
    {L"m2ts",     Video,    Plain, L"video/mp2t"},
    {L"m2v",      Video,    Plain, L"video/mpeg"},
    {L"mjpeg",    Video,    Plain, L"video/x-motion-jpeg"},
    {L"mk3d",     Video,    Plain, L"video/x-matroska"},
    {L"mkv",      Video,    Plain, L"video/x-matroska"},
    {L"mpe",      Video,    Plain, L"video/mpeg"},
    {L"mpeg",     Video,    Plain, L"video/mpeg"},
    {L"mpg",      Video,    Plain, L"video/mpeg"},
    {L"mpls",     Video,    Plain, L""},
    {L"mpv",      Video,    Plain, L"video/mpeg"},
    {L"mts",      Video,    Plain, L"video/mp2t"},
    {L"mxf",      Video,    Plain, L"application/mxf"},
    {L"nut",      Video,    Plain, L"video/x-nut"},
    {L"ogm",      Video,    Plain, L"video/ogg"},
    {L"ogv",      Video,    Plain, L"video/ogg"},
    {L"rm",       Video,    Plain, L"application/vnd.rn-realmedia"},
    {L"rmvb",     Video,    Plain, L"application/vnd.rn-realmedia-vbr"},
    {L"rv",       Video,    Plain, L"video/vnd.rn-realvideo"},
    {L"tp",       Video,    Plain, L"video/mp2t"},
    {L"trp",      Video,    Plain, L"video/mp2t"},
    {L"ts",       Video,    Plain, L"video/mp2t"},
    {L"vob",      Video,    Plain, L"video/mpeg"},
    {L"webm",     Video,    Plain, L"video/webm"},
    {L"wm",       Video,    Plain, L"video/x-ms-wm"},
    {L"wmv",      Video,    Plain, L"video/x-ms-wmv"},
    {L"wtv",      Video,    Plain, L"video/x-ms-wtv"},
    {L"y4m",      Video,    Plain, L"video/x-yuv4mpeg"},
    {L"zts",      Video,    Plain, L"video/mp2t"},
    {L"ztv",      Video,    Plain, L""},

    {L"aac",      Audio,    Plain, L"audio/aac"},
    {L"ac3",      Audio,    Plain, L"audio/ac3"},
    {L"aif",      Audio,    Plain, L"audio/aiff"},
    {L"aifc",     Audio,    Plain, L"audio/aiff"},
    {L"aiff",     Audio,    Plain, L"audio/aiff"},
    {L"amr",      Audio,    Plain, L"audio/amr"},
    {L"ape",      Audio,    Plain, L"audio/x-ape"},
    {L"au",       Audio,    Plain, L"audio/basic"},
    {L"caf",      Audio,    Plain, L"audio/x-caf"},
    {L"dff",      Audio,    Plain, L"audio/x-dff"},
    {L"dsf",      Audio,    Plain, L"audio/x-dsf"},
    {L"dts",      Audio,    Plain, L"audio/vnd.dts"},
    {L"dtshd",    Audio,    Plain, L"audio/vnd.dts.hd"},
    {L"eac3",     Audio,    Plain, L"audio/eac3"},
    {L"ec3",      Audio,    Plain, L"audio/eac3"},
    {L"flac",     Audio,    Plain, L"audio/flac"},
    {L"m2a",      Audio,    Plain, L"audio/mpeg"},
    {L"mka",      Audio,    Plain, L"audio/x-matroska"},
    {L"mlp",      Audio,    Plain, L"audio/vnd.dolby.mlp"},
    {L"mp1",      Audio,    Plain, L"audio/mpeg"},
    {L"mp2",      Audio,    Plain, L"audio/mpeg"},
    {L"mp3",      Audio,    Plain, L"audio/mpeg"},
    {L"mpc",      Audio,    Plain, L"audio/x-musepack"},
    {L"oga",      Audio,    Plain, L"audio/ogg"},
    {L"ogg",      Audio,    Plain, L"audio/ogg"},
    {L"opus",     Audio,    Plain, L"audio/ogg"},
    {L"ra",       Audio,    Plain, L"audio/vnd.rn-realaudio"},
    {L"ram",      Audio,    Plain, L"audio/vnd.rn-realaudio"},
    {L"snd",      Audio,    Plain, L"audio/basic"},
    {L"spx",      Audio,    Plain, L"audio/ogg"},
    {L"tak",      Audio,    Plain, L"audio/x-tak"},
    {L"thd",      Audio,    Plain, L"audio/vnd.dolby.mlp"},
    {L"tta",      Audio,    Plain, L"audio/x-tta"},
    {L"w64",      Audio,    Plain, L"audio/x-w64"},
    {L"wav",      Audio,    Plain, L"audio/wav"},
    {L"wave",     Audio,    Plain, L"audio/wav"},
    {L"weba",     Audio,    Plain, L"audio/webm"},
    {L"wma",      Audio,    Plain, L"audio/x-ms-wma"},
    {L"wv",       Audio,    Plain, L"audio/x-wavpack"},

    {L"avif",     Image,    None,  L"image/avif"},
    {L"bmp",      Image,    None,  L"image/bmp"},
    {L"gif",      Image,    None,  L"image/gif"},
    {L"heic",     Image,    None,  L"image/heic"},
    {L"heif",     Image,    None,  L"image/heif"},
    {L"ico",      Image,    None,  L"image/vnd.microsoft.icon"},
    {L"jpe",      Image,    None,  L"image/jpeg"},
    {L"jpeg",     Image,    None,  L"image/jpeg"},
    {L"jpg",      Image,    None,  L"image/jpeg"},
    {L"jxl",      Image,    None,  L"image/jxl"},
    {L"png",      Image,    None,  L"image/png"},
    {L"svg",      Image,    None,  L"image/svg+xml"},
    {L"tif",      Image,    None,  L"image/tiff"},
    {L"tiff",     Image,    None,  L"image/tiff"},
    {L"webp",     Image,    None,  L"image/webp"},

    {L"asx",      Playlist, None,  L"video/x-ms-asf"},
    {L"cue",      Playlist, None,  L"application/x-cue"},
    {L"m3u",      Playlist, None,  L"audio/x-mpegurl"},
    {L"m3u8",     Playlist, None,  L"application/vnd.apple.mpegurl"},
    {L"pls",      Playlist, None,  L"audio/x-scpls"},
    {L"wpl",      Playlist, None,  L"application/vnd.ms-wpl"},
    {L"xspf",     Playlist, None,  L"application/xspf+xml"},

    {L"ass",      Data,     None,  L"text/x-ssa"},
    {L"gz",       Data,     None,  L"application/gzip"},
    {L"htm",      Data,     None,  L"text/html"},
    {L"html",     Data,     None,  L"text/html"},
    {L"json",     Data,     None,  L"application/json"},
    {L"log",      Data,     None,  L"text/plain"},
    {L"lrc",      Data,     None,  L"text/plain"},
    {L"pdf",      Data,     None,  L"application/pdf"},
    {L"srt",      Data,     None,  L"application/x-subrip"},
    {L"ssa",      Data,     None,  L"text/x-ssa"},
    {L"tar",      Data,     None,  L"application/x-tar"},
    {L"txt",      Data,     None,  L"text/plain"},
    {L"vtt",      Data,     None,  L"text/vtt"},
    {L"xml",      Data,     None,  L"text/xml"},
    {L"xz",       Data,     None,  L"application/x-xz"},
    {L"zip",      Data,     None,  L"application/zip"},
};
// clang-format on

wchar_t ToLowerASCII(wchar_t character)
{
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

// Does not use the locale: some locales do not pair "I" with "i".
bool IsExtension(const wchar_t* lower, const wchar_t* text)
{
    while (*lower != L'\0' && *lower == ToLowerASCII(*text))
    {
        ++lower;
        ++text;
    }
    return *lower == L'\0' && *text == L'\0';
}
}

const CFileType* CFileTypeTable::Find(const wchar_t* extension)
{
    for (const CFileType& type : Table)
        if (IsExtension(type.Extension, extension))
            return &type;
    return nullptr;
}
