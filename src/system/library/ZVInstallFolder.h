#pragma once

#include "core/string/ZVString.h"

// The folder that the product's libraries are loaded from. It is found so that a build tree, an unpacked archive and the
// installed package all run without settings.
namespace ZVInstallFolder
{
// Where the product's package installs it.
inline constexpr wchar_t Fixed[] = L"/usr/lib/zivora/Lantern Deck 33/";

// The folder of the running program, or else, for a product with a name, that product's folder beside the fixed one: the first of
// them that holds the tools library, with "/" at its end. Empty when none does.
ZVString Find(const ZVString& productName);
}
