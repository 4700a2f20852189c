#pragma once

#include "core/string/ZVString.h"

// SHA-256 checksums, which stand beside the archives on the server in files as sha256sum writes them.
namespace ZVComponentChecksum
{
// The checksum that a text begins with: 64 hexadecimal digits that are followed by a blank, a line end or nothing. Empty when it
// begins with anything else.
ZVString Read(const ZVString& text);

// The checksum of a file, in lower case; empty when there is none to be had.
ZVString OfFile(const ZVString& path);
}
