#pragma once

#include "core/string/ZVString.h"

// Takes the characters of one kind from the start of a text, for sort keys.
class ZVStringGetLeadingCharacters
{
public:
    virtual ~ZVStringGetLeadingCharacters() = default;

    // The characters of text before the first one that does not belong.
    ZVString Get(const ZVString& text) const;

protected:
    virtual bool Belongs(wchar_t character) const = 0;
};

// The leading letters.
class ZVStringLeadingAlphaCharacters : public ZVStringGetLeadingCharacters
{
protected:
    bool Belongs(wchar_t character) const override;
};

// The leading word characters: letters, digits and the underscore.
class ZVStringLeadingWordCharacters : public ZVStringGetLeadingCharacters
{
protected:
    bool Belongs(wchar_t character) const override;
};
