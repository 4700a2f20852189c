#pragma once

#include "core/string/ZVString.h"

// Languages as discs and files name them: by ISO 639-1 (two letters), by one of the two forms of ISO 639-2 (three letters), or by
// an English name. Each language has one primary code of three letters in lower case and one display name. Case never matters,
// except where told. A look-up reads constant tables only, so any thread may ask.

// The display name for the code of three letters that the text begins with: "English" for "eng", for "ENG" and for "english".
// Empty for a code that no language has and for a text of fewer letters.
ZVString LanguageNameFromCode(const ZVString& code);

// The primary code for a language in any form, which the length of the text tells:
// - two characters are an ISO 639-1 code, and give an empty text when no language has it;
// - three characters are an ISO 639-2 code, and stay as they are when no language has it; "und" in lower case, which says that
//   the language is not known, gives an empty text;
// - more characters are a name, as CodeFromName takes it;
// - fewer give an empty text.
ZVString NormalizeLanguageCode(const ZVString& text);

// The primary code for the ISO 639-1 code that the text begins with; empty when no language has it.
ZVString CodeFromShortCode(const ZVString& code);

// The primary code for one of a language's English names, with or without white space around it. A text that is no such name
// comes back as it is; nothing but white space gives an empty text.
ZVString CodeFromName(const ZVString& name);
