#include "caller/film/ReadResult.h"

#include "caller/files/ReadRegularFile.h"
#include "caller/film/CFilm.h"

#include <charconv>
#include <cstring>
#include <pugixml.hpp>
#include <string_view>

namespace
{
using nlohmann::json;

// Some hundred keys and the chapters of a long film take a thousandth of that, in bytes.
constexpr uint64_t MaximumSize = 64 << 20;

enum class ValueKind
{
    Text,
    Number,
    Texts,
    Numbers,
};

// A key of the results that is more than a text. A list has an entry for each stream; a separator follows or parts them.
struct ResultKey
{
    const char* Name;
    ValueKind Kind;
    char Separator = '\0';
};

using enum ValueKind;

// clang-format off
constexpr ResultKey ResultKeys[] = {
    {"File Size", Number}, {"Duration", Number}, {"FPS", Number}, {"Width", Number}, {"Height", Number}, {"Sample Rate", Number},
    {"Channels", Number}, {"Bit Depth", Number}, {"Bitrate", Number}, {"$!@_Chapters", Number},
    {"Date", Number}, {"Date Created", Number}, {"Date Recorded", Number},
    {"Video Bitrate", Number}, {"Color Depth", Number}, {"HDR Mastering Luminance", Number}, {"HDR Peak Luminance", Number},
    {"HDR Average Luminance", Number}, {"Aspect Ratio", Number}, {"Audio Streams", Number}, {"Subtitle Streams", Number},
    {"Movement Number", Number}, {"Movement Count", Number}, {"BPM", Number}, {"Number of Episodes", Number},
    {"Show Work Movement", Number}, {"Compilation", Number}, {"Podcast", Number}, {"Gapless Playback", Number},
    {"stik", Number}, {"Access Rating", Number}, {"Episode", Number}, {"Season", Number},

    {"Audio Codec", Texts, ';'}, {"Audio Title", Texts, ';'}, {"Audio Language", Texts, ';'},
    {"Subtitle Codec", Texts, ';'}, {"Subtitle Title", Texts, ';'}, {"Subtitle Language", Texts, ';'},
    {"Audio Channels", Numbers, ';'}, {"Audio Sample Rate", Numbers, ';'}, {"Audio Bitrate", Numbers, ';'},
    {"Actors", Texts, ';'}, {"Credits", Texts, ';'},
    {"$!@_ChapterNames", Texts, '|'}, {"$!@_ChapterTimes", Numbers, '|'},
};
// clang-format on

// A number is told as it is written: a whole one has no decimals. A text that is no number stays one.
json ReadNumber(std::string_view text)
{
    int64_t whole = 0;
    const char* const end = text.data() + text.size();
    if (const auto [last, error] = std::from_chars(text.data(), end, whole); error == std::errc() && last == end)
        return whole;
    double number = 0;
    if (const auto [last, error] = std::from_chars(text.data(), end, number); error == std::errc() && last == end)
        return number;
    return text.empty() ? json() : json(text);
}

json ReadList(std::string_view text, const ResultKey& key)
{
    json list = json::array();
    while (!text.empty())
    {
        const size_t end = text.find(key.Separator);
        const std::string_view entry = text.substr(0, end);
        if (entry.empty())
            list.push_back(nullptr);
        else
            list.push_back(key.Kind == Numbers ? ReadNumber(entry) : json(entry));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return list;
}

json ReadValue(const char* name, const char* text)
{
    for (const ResultKey& key : ResultKeys)
        if (strcmp(key.Name, name) == 0)
            return key.Kind == Number ? ReadNumber(text) : ReadList(text, key);
    return text;
}
}

bool ReadResult(const std::filesystem::path& file, json& values)
{
    std::optional<std::string> bytes = ReadRegularFile(file, MaximumSize);
    if (!bytes)
        return false;
    pugi::xml_document document;
    const pugi::xml_node root =
        document.load_buffer_inplace(bytes->data(), bytes->size(), pugi::parse_default | pugi::parse_ws_pcdata_single).status ==
                pugi::status_ok
            ? document.child("XMLPH")
            : pugi::xml_node();
    if (!root)
        return false;
    for (const pugi::xml_node item : root.children("Item"))
        values[ToUTF8(item.attribute("Name").value())] =
            ReadValue(item.attribute("Name").value(), ToUTF8(item.text().get()).c_str());
    return true;
}
