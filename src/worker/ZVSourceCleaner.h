#pragma once

class ZVString;

// Tidies the white space of all header files (*.h) below a folder: lines that hold one to four blanks or a tab become empty, and the
// empty lines between an access specifier and what it stands for go. The rules know lines that end in CR and LF only. Lines
// that were emptied are not looked at again, so that a run of them may need a second call. What is not ours to change stays as it
// is: third parties' code and plug-ins.
//
// A file that the rules change is saved as UTF-8 with a mark if it has a character from U+0080 to U+FFFF, and otherwise as one byte a
// character. It is whole at any time; one that stays as it was is not written.
void CleanSources(const ZVString& folder);
