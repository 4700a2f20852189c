#pragma once

#include "core/string/ZVString.h"

// Takes the run of characters of one kind from the start of a text, as sort keys need it.
class ZVStringGetLeadingCharacters
{
public:
    virtual ~ZVStringGetLeadingCharacters() = default;

    // The leading characters of text that belong, all of them when every one does.
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
