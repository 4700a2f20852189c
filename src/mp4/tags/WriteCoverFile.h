#pragma once

class CAtomBytes;
class ZVFilename;

// Writes a picture to the file that is named, which is replaced once the picture is whole. Without a name it goes to a new file in
// the folder for temporary files, called "cover art" with an extension, which filename names afterwards; nobody else is ever given
// the same file. False, with the name as it was and no new file left, if that fails; the cause is logged.
bool WriteCoverFile(const CAtomBytes& picture, const wchar_t* extension, ZVFilename& filename);
