#include "caller/output/FilmBlock.h"

#include "caller/output/Messages.h"
#include "caller/output/Units.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace
{
using nlohmann::json;

// Texts with something between them; empty ones are left out.
std::string Join(const std::vector<std::string>& texts, const char* between)
{
    std::string joined;
    for (const std::string& text : texts)
        if (!text.empty())
            joined += (joined.empty() ? "" : between) + text;
    return joined;
}

template <class... Values>
std::string Format(const char* format, Values... values)
{
    std::array<char, 200> text;
    snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

std::string WithUnit(double number, const char* unit)
{
    return number > 0 ? Format("%.10g %s", number, unit) : "";
}

std::string MakeBitrate(double kilobits)
{
    return kilobits >= 1000 ? Format("%.1f Mbit/s", kilobits / 1000) : WithUnit(kilobits, "kbit/s");
}

std::string MakePicture(const CFilm& film)
{
    const double width = film.GetNumber("Width");
    if (width <= 0)
        return {};
    const double aspect = film.GetNumber("Aspect Ratio");
    return Join({film.GetText("Video Codec"),
                 Format("%.0fx%.0f", width, film.GetNumber("Height")) + (aspect > 0 ? Format(" (%.10g)", aspect) : ""),
                 film.GetNumber("FPS") > 0 ? Format("%.5g fps", film.GetNumber("FPS")) : "",
                 WithUnit(film.GetNumber("Color Depth"), "bit"), film.GetText("Color Space"), film.GetText("Video Scan"),
                 MakeBitrate(film.GetNumber("Video Bitrate"))},
                ", ");
}

std::string MakeHDR(const CFilm& film)
{
    const auto withNits = [&](const char* key, const char* name)
    { return film.GetNumber(key) > 0 ? Format("%s %.0f nits", name, film.GetNumber(key)) : std::string(); };
    if (film.GetText("HDR Format").empty())
        return {};
    return Join({film.GetText("HDR Format"), withNits("HDR Mastering Luminance", "mastered at"),
                 film.GetText("HDR Mastering Color Space"), withNits("HDR Peak Luminance", "peak"),
                 withNits("HDR Average Luminance", "average")},
                ", ");
}

std::string GetEntry(const CFilm& film, const std::string& key, size_t index)
{
    const json& list = film.GetList(key.c_str());
    if (index >= list.size() || list[index].is_null())
        return {};
    return list[index].is_string() ? list[index].get<std::string>() : list[index].dump();
}

std::string WithUnit(const std::string& number, const char* unit)
{
    return number.empty() ? "" : number + " " + unit;
}

std::string MakeChannels(const std::string& count)
{
    return WithUnit(count, count == "1" ? "channel" : "channels");
}

std::string MakeStream(const CFilm& film, const std::string& kind, size_t index)
{
    const std::string title = GetEntry(film, kind + " Title", index);
    return Join({GetEntry(film, kind + " Language", index), GetEntry(film, kind + " Codec", index),
                 MakeChannels(GetEntry(film, kind + " Channels", index)),
                 WithUnit(GetEntry(film, kind + " Sample Rate", index), "Hz"),
                 WithUnit(GetEntry(film, kind + " Bitrate", index), "kbit/s"), title.empty() ? "" : "\"" + title + "\""},
                ", ");
}

void AddLine(std::string& block, const char* name, const std::string& text)
{
    if (!text.empty())
        block += Format("  %-10s", name) + " " + MakePlain(text) + "\n";
}

void AddStreams(std::string& block, const CFilm& film, const char* name, const std::string& kind)
{
    const size_t count = film.GetList((kind + " Codec").c_str()).size();
    for (size_t index = 0; index < count; ++index)
        AddLine(block, index == 0 ? name : "", std::to_string(index + 1) + "  " + MakeStream(film, kind, index));
}
}

std::string MakeFilmBlock(const CFilm& film)
{
    std::string block = MakePlain(ToUTF8(film.Path)) + "\n";
    AddLine(block, "Length", MakeLength(film.GetNumber("Duration")));
    AddLine(
        block, "Container",
        Join({film.GetText("File Type"), MakeSize(film.GetNumber("File Size")), MakeBitrate(film.GetNumber("Bitrate"))}, ", "));
    AddLine(block, "Picture", MakePicture(film));
    AddLine(block, "HDR", MakeHDR(film));
    AddStreams(block, film, "Sound", "Audio");
    AddStreams(block, film, "Subtitles", "Subtitle");
    AddLine(block, "Chapters", film.GetText("$!@_Chapters"));
    for (const char* const tag : {"Name", "Series", "Artist", "Album", "Genre", "Director"})
        AddLine(block, tag, film.GetText(tag));
    return block;
}
