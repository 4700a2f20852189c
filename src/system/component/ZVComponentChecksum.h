#pragma once

#include "core/string/ZVString.h"

// SHA-256 checksums. On the server one may stand beside each archive, in a file as sha256sum writes it.
namespace ZVComponentChecksum
{
// The checksum that a text begins with: 64 hexadecimal digits that are followed by a blank, a line end or nothing. Empty when it
// begins with anything else.
ZVString Read(const ZVString& text);

// The checksum of a file, in lower case; empty when it cannot be computed.
ZVString OfFile(const ZVString& path);
}
