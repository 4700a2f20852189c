#pragma once

#include "core/string/ZVString.h"

// The message of a program that cannot start because one of its libraries does not load.
namespace ZVModuleMessage
{
// The message with the library's name and the reason.
ZVString GetText(const ZVString& module, const ZVString& reason);

// Writes it to standard error in UTF-8.
void Print(const ZVString& module, const ZVString& reason);
}
