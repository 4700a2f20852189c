#pragma once

#include "core/string/ZVString.h"

#include <cstdint>
#include <span>

class IZVVideoPlayer;
class ZVPropertyMap;

// A tag, and the property that gets its text.
struct ZVTagRule
{
    const char* Tag;
    const wchar_t* Property;
};

// Takes the tags of an open film over into properties. A property that has a value keeps it, so whoever comes first wins; what has an
// empty one has none.
class ZVTagMapper
{
public:
    // Both outlive the mapper.
    ZVTagMapper(IZVVideoPlayer& player, ZVPropertyMap& properties) : m_player(player), m_properties(properties) {}

    enum class DateForm
    {
        Number,       // the days of ZVDate, with the fraction of the day
        UnixSeconds,  // whole seconds since 1970
    };

    // The text of a tag; empty when the film has no such tag.
    ZVString GetTag(const char* tag) const;
    // The text of the first tag, and if that is empty of the second.
    ZVString GetTag(const char* tag, const char* otherTag) const;

    void MapTag(const ZVTagRule& rule) const;
    void MapTags(std::span<const ZVTagRule> rules) const;
    // The same of a tag whose text is a date. A text that is none says nothing.
    void MapDate(const ZVTagRule& rule, DateForm form) const;

    bool HasValue(const wchar_t* property) const;
    // Sets a property without a value to the date in a text, as a number. The flags are those of IZVDateServices.
    void SetDate(const wchar_t* property, const ZVString& text, int32_t flags, DateForm form = DateForm::Number) const;
    ZVPropertyMap& GetProperties() const { return m_properties; }

private:
    IZVVideoPlayer& m_player;
    ZVPropertyMap& m_properties;
};
