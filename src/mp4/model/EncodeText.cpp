#include "mp4/model/EncodeText.h"

namespace
{
constexpr char32_t FirstLead = 0xd800;
constexpr char32_t FirstTrail = 0xdc00;
constexpr char32_t AfterTrails = 0xe000;
constexpr char32_t FirstSupplementary = 0x10000;
constexpr char32_t Last = 0x10ffff;

// Takes the next character off a text.
char32_t TakeCharacter(std::wstring_view& text)
{
    const auto first = static_cast<char32_t>(text.front());
    text.remove_prefix(1);
    if (first > Last)
        return U'?';
    if (first < FirstLead || first >= AfterTrails)
        return first;
    const auto second = text.empty() ? U'\0' : static_cast<char32_t>(text.front());
    if (first >= FirstTrail || second < FirstTrail || second >= AfterTrails)
        return U'?';
    text.remove_prefix(1);
    return FirstSupplementary + ((first - FirstLead) << 10) + (second - FirstTrail);
}

void Append(char32_t character, std::string& bytes)
{
    constexpr char32_t FirstOfLength[] = {0, 0x80, 0x800, FirstSupplementary};
    constexpr uint8_t LeadOfLength[] = {0, 0xc0, 0xe0, 0xf0};
    int following = 3;
    while (character < FirstOfLength[following])
        --following;
    bytes += static_cast<char>(LeadOfLength[following] | character >> 6 * following);
    for (int shift = 6 * (following - 1); shift >= 0; shift -= 6)
        bytes += static_cast<char>(0x80 | (character >> shift & 0x3f));
}
}

std::string EncodeText(std::wstring_view text, size_t maximumBytes)
{
    std::string bytes;
    while (!text.empty())
    {
        const size_t before = bytes.size();
        Append(TakeCharacter(text), bytes);
        if (bytes.size() > maximumBytes)
        {
            bytes.resize(before);
            break;
        }
    }
    return bytes;
}
