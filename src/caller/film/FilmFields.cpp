#include "caller/film/FilmFields.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <strings.h>

namespace
{
using nlohmann::json;

// A key as an argument of a template.
template <size_t Size>
struct KeyText
{
    consteval KeyText(const char (&text)[Size]) { std::ranges::copy(text, Text); }

    char Text[Size] {};
};

json TextOrNull(const std::string& text)
{
    return text.empty() ? json() : json(text);
}

template <KeyText Key>
json GetText(const CFilm& film)
{
    return TextOrNull(film.GetText(Key.Text));
}

template <KeyText Key>
json GetNumber(const CFilm& film)
{
    const auto found = film.Values.find(Key.Text);
    return found == film.Values.end() || !found->is_number() ? json() : *found;
}

// The entries of a list, each once and in their order.
template <KeyText Key>
json GetWords(const CFilm& film)
{
    json words = json::array();
    for (const json& entry : film.GetList(Key.Text))
        if (entry.is_string() && std::ranges::find(words, entry) == words.end())
            words.push_back(entry);
    return words;
}

json GetFileName(const CFilm& film)
{
    return ToUTF8(std::filesystem::path(film.Path).filename());
}

json GetPath(const CFilm& film)
{
    return ToUTF8(film.Path);
}

json GetContainer(const CFilm& film)
{
    std::string type = film.GetText("File Type");
    std::ranges::transform(type, type.begin(), [](unsigned char letter) { return static_cast<char>(tolower(letter)); });
    return TextOrNull(type);
}

// "mkv video (video: H264, audio: AC-3)" names the codec of the picture without profile and level.
json GetVideoCodec(const CFilm& film)
{
    constexpr std::string_view Mark = "(video: ";
    const std::string compression = film.GetText("Compression");
    const size_t mark = compression.find(Mark);
    if (mark == std::string::npos)
        return {};
    const size_t start = mark + Mark.size();
    return TextOrNull(compression.substr(start, compression.find_first_of(",)", start) - start));
}

struct HDRKind
{
    std::string_view Start;
    const char* Name;
};

// In this order: HDR10+ begins like HDR10.
constexpr HDRKind HDRKinds[] = {
    {"DolbyVision", "DolbyVision"},
    {"HDR10+",      "HDR10+"     },
    {"HDR10",       "HDR10"      },
    {"HLG",         "HLG"        },
};

json GetHDRKind(const CFilm& film)
{
    if (film.GetText("Video Codec").empty())
        return {};
    const std::string format = film.GetText("HDR Format");
    for (const HDRKind& kind : HDRKinds)
        if (format.starts_with(kind.Start))
            return kind.Name;
    return "SDR";
}

struct ResolutionClass
{
    double Width;   // at least so many pixels,
    double Height;  // or so many
    const char* Name;
};

// Films with bars cut off have fewer lines, upright ones fewer columns than their class, so one side decides. Some pixels are allowed
// to be missing on either.
constexpr ResolutionClass ResolutionClasses[] = {
    {7600, 4300, "8K"   },
    {3800, 2100, "4K"   },
    {2500, 1420, "1440p"},
    {1880, 1060, "1080p"},
    {1240, 700,  "720p" },
    {0,    560,  "576p" },
    {0,    460,  "480p" },
    {1,    1,    "small"},
};

json GetResolution(const CFilm& film)
{
    const double width = std::max(film.GetNumber("Width"), film.GetNumber("Height"));
    const double height = std::min(film.GetNumber("Width"), film.GetNumber("Height"));
    for (const ResolutionClass& row : ResolutionClasses)
        if (height > 0 && ((row.Width > 0 && width >= row.Width) || height >= row.Height))
            return row.Name;
    return {};
}

// Of the stream that has the most.
json GetChannels(const CFilm& film)
{
    double most = film.GetNumber("Channels");
    for (const json& count : film.GetList("Audio Channels"))
        if (count.is_number())
            most = std::max(most, count.get<double>());
    return most > 0 ? json(std::llround(most)) : json();
}

using enum FieldKind;

// clang-format off
constexpr FilmField FilmFields[] = {
    {"path",       Text,   "the whole name",                                    GetPath},
    {"file",       Text,   "the name without its folder",                       GetFileName},
    {"title",      Text,   "what the film calls itself",                        GetText<"Name">},
    {"kind",       Text,   "Video or Audio",                                    GetText<"Media Type">},
    {"container",  Text,   "mkv, mp4 and so on",                                GetContainer},
    {"size",       Number, "bytes",                                             GetNumber<"File Size">},
    {"duration",   Number, "seconds",                                           GetNumber<"Duration">},
    {"resolution", Text,   "8K, 4K, 1440p, 1080p, 720p, 576p, 480p or small",   GetResolution},
    {"width",      Number, "pixels",                                            GetNumber<"Width">},
    {"height",     Number, "pixels",                                            GetNumber<"Height">},
    {"codec",      Text,   "of the picture",                                    GetVideoCodec},
    {"hdr",        Text,   "SDR, HDR10, HDR10+, HLG or DolbyVision",            GetHDRKind},
    {"hdrformat",  Text,   "the same with the profile",                         GetText<"HDR Format">},
    {"peak",       Number, "nits",                                              GetNumber<"HDR Peak Luminance">},
    {"colors",     Text,   "colour primaries",                                  GetText<"Color Space">},
    {"depth",      Number, "bits of a colour",                                  GetNumber<"Color Depth">},
    {"fps",        Number, "frames per second",                                 GetNumber<"FPS">},
    {"scan",       Text,   "Progressive or Interlaced",                         GetText<"Video Scan">},
    {"aspect",     Number, "width by height",                                   GetNumber<"Aspect Ratio">},
    {"bitrate",    Number, "kilobits per second",                               GetNumber<"Bitrate">},
    {"audio",      Words,  "codecs of the sound",                               GetWords<"Audio Codec">},
    {"channels",   Number, "of the stream that has the most",                   GetChannels},
    {"language",   Words,  "languages of the sound, in English",                GetWords<"Audio Language">},
    {"subtitles",  Words,  "languages of the subtitles",                        GetWords<"Subtitle Language">},
    {"chapters",   Number, "count",                                             GetNumber<"$!@_Chapters">},
    {"series",     Text,   "what it is an episode of",                          GetText<"Series">},
    {"artist",     Text,   "of a sound file",                                   GetText<"Artist">},
    {"album",      Text,   "of a sound file",                                   GetText<"Album">},
    {"genre",      Text,   "as the tags have it",                               GetText<"Genre">},
    {"crop",       Text,   "left, top, right and bottom between the bars",      GetText<"Video Crop">},
    {"score",      Number, "how sure that is, from 1 to 5",                     GetNumber<"Video Black Bar Score">},
};
// clang-format on
}

std::span<const FilmField> GetFilmFields()
{
    return FilmFields;
}

const FilmField* FindFilmField(const std::string& name)
{
    const auto* const found =
        std::ranges::find_if(FilmFields, [&](const FilmField& field) { return strcasecmp(field.Name, name.c_str()) == 0; });
    return found == std::end(FilmFields) ? nullptr : found;
}

std::string JoinWords(const json& words)
{
    std::string text = ";";
    for (const json& word : words)
        text += word.get<std::string>() + ";";
    return text;
}

std::string MakeFieldText(const json& value)
{
    if (value.is_null())
        return {};
    if (value.is_string())
        return value.get<std::string>();
    if (!value.is_array())
        return value.dump();
    std::string text;
    for (const json& word : value)
        text += (text.empty() ? "" : ";") + word.get<std::string>();
    return text;
}
