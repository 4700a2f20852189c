#pragma once

#include "core/string/ZVString.h"

// Languages as discs and files name them: by ISO 639-1 (two letters), by one of the two forms of ISO 639-2 (three letters), or by
// an English name. Each language has one primary code of three letters in lower case and one display name. Case does not matter,
// except where stated. Only constant tables are read, so any thread may call these.

// The display name for the three-letter code at the start of the text: "English" for "eng", for "ENG" and for "english". Empty if
// no language has that code, or if the text is shorter.
ZVString LanguageNameFromCode(const ZVString& code);

// The primary code for a language in any form. The length of the text decides:
// - two characters are an ISO 639-1 code; the result is empty if no language has it;
// - three characters are an ISO 639-2 code, which is returned unchanged if no language has it; for "und" in lower case, which
//   means that the language is not known, the result is empty;
// - more characters are a name, see CodeFromName;
// - for fewer the result is empty.
ZVString NormalizeLanguageCode(const ZVString& text);

// The primary code for the ISO 639-1 code at the start of the text; empty if no language has it.
ZVString CodeFromShortCode(const ZVString& code);

// The primary code for one of a language's English names, with or without white space around it. Any other text is returned
// unchanged; for white space alone the result is empty.
ZVString CodeFromName(const ZVString& name);
