#pragma once

#include "core/string/ZVString.h"

// Gives a file what belongs to another one beside its content: owner, mode, and extended attributes, among them the access control
// lists. What the file has of these and the other has not goes. What a security module sets is given as far as it lets this user.
// False, with a log line, if anything else cannot be given.
bool ZVCopyAttributes(const ZVString& from, const ZVString& to);
