#include "caller/film/CFilm.h"

#include "caller/film/ReadBlackBars.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace
{
// What stands beside the values of a film in what is printed, and what it has of its black bars.
constexpr std::string_view OwnKeys[] = {
    "path",
    "path bytes",
    "error",
    "vanished",
    "crop",
    "picture",
    BlackBarKeys::Crop,
    BlackBarKeys::Report,
    BlackBarKeys::Aspect,
    BlackBarKeys::Score,
};
}

void CFilm::Add(const nlohmann::json& result)
{
    for (const auto& [key, value] : result.items())
        if (std::ranges::find(OwnKeys, key) == std::end(OwnKeys))
            Values[key] = value;
}

std::string CFilm::GetText(const char* key) const
{
    const auto found = Values.find(key);
    if (found == Values.end() || found->is_structured())
        return {};
    return found->is_string() ? found->get<std::string>() : found->dump();
}

double CFilm::GetNumber(const char* key) const
{
    const auto found = Values.find(key);
    return found == Values.end() || !found->is_number() ? 0 : found->get<double>();
}

const nlohmann::json& CFilm::GetList(const char* key) const
{
    static const nlohmann::json Empty = nlohmann::json::array();
    const auto found = Values.find(key);
    return found == Values.end() || !found->is_array() ? Empty : *found;
}

std::string ToUTF8(const std::string& bytes)
{
    // The library has the rule of which bytes are replaced.
    const std::string quoted = nlohmann::json(bytes).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return nlohmann::json::parse(quoted).get<std::string>();
}

std::string EscapeBytes(const std::string& bytes)
{
    if (ToUTF8(bytes) == bytes)
        return {};
    std::string escaped;
    for (const char byte : bytes)
    {
        const auto code = static_cast<uint8_t>(byte);
        if (code >= 0x20 && code < 0x7f && byte != '"' && byte != '\\')
        {
            escaped += byte;
            continue;
        }
        std::array<char, 5> text;
        snprintf(text.data(), text.size(), "\\x%02x", code);
        escaped += text.data();
    }
    return escaped;
}
