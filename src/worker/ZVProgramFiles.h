#pragma once

#include "core/string/ZVString.h"

// The files of a program that a locked task may have to run.
namespace ZVProgramFiles
{
// The file of a program that is found by its name, without links; empty if there is none.
ZVString Find(const char* name);
// The program that brings dynamically linked programs into memory: that of this one.
ZVString GetInterpreter();
// Whether files can be renamed from one folder to another. False too if one of them is not there.
bool AreOnOneMount(const ZVString& folder, const ZVString& other);
}
