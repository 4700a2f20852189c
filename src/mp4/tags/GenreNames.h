#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The name of a genre by its number in the list of ID3v1 and its later additions, from 0 on; null if there is none. The spellings
// are those of the list that players show.
const wchar_t* GetGenreName(int32_t number);
// The reverse, for a name with the spelling of the list; -1 for any other.
int32_t FindGenreNumber(const ZVString& name);
