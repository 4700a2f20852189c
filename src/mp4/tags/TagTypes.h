#pragma once

#include "mp4/model/CAtomClass.h"

#include <cstdint>

// Whether a tag has so much room that a long text stays whole.
enum class TagLength
{
    Limited,  // to 255 bytes of UTF-8
    Unlimited,
};

// A tag that is a text.
struct StringTagType
{
    uint32_t Type;
    TagLength Length;
    CAtomClass Class;
};

// The tag of a type, or null.
const StringTagType* FindStringTag(uint32_t type);
// The class that a type has inside ilst if it is a tag, be it a text or not; null otherwise.
const CAtomClass* FindTagClass(uint32_t type);
