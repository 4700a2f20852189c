#include "video/basic/ZVTagMapper.h"

#include "contracts/IZVVideoPlayer.h"
#include "core/date/ZVDate.h"
#include "core/property/ZVPropertyMap.h"
#include "system/library/ZVDllString.h"

ZVString ZVTagMapper::GetTag(const char* tag) const
{
    ZVString text;
    ZVDllString value(text);
    m_player.GetTag(tag, value);
    return text;
}

ZVString ZVTagMapper::GetTag(const char* tag, const char* otherTag) const
{
    const ZVString text = GetTag(tag);
    return text.IsEmpty() ? GetTag(otherTag) : text;
}

void ZVTagMapper::MapTag(const ZVTagRule& rule) const
{
    const ZVString text = GetTag(rule.Tag);
    if (!text.IsEmpty() && !HasValue(rule.Property))
        m_properties.SetString(rule.Property, text);
}

void ZVTagMapper::MapTags(std::span<const ZVTagRule> rules) const
{
    for (const ZVTagRule& rule : rules)
        MapTag(rule);
}

void ZVTagMapper::MapDate(const ZVTagRule& rule, DateForm form) const
{
    SetDate(rule.Property, GetTag(rule.Tag), 0, form);
}

bool ZVTagMapper::HasValue(const wchar_t* property) const
{
    return !m_properties.GetString(property).IsEmpty();
}

void ZVTagMapper::SetDate(const wchar_t* property, const ZVString& text, int32_t flags, DateForm form) const
{
    double date = 0.0;
    if (HasValue(property) || !ZVDate::Parse(text, flags, date))
        return;
    m_properties.SetString(property,
                           form == DateForm::Number ? ZVString::FromDouble(date) : ZVString::FromInt(ZVDate::ToUnix(date)));
}
