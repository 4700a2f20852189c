#pragma once

class CMp4File;
class ZVFilename;
class ZVString;

// Opens a file of the MP4 family, reads its atoms and verifies them, so that it can be asked; the type is the extension that says what
// the file is. False, with the reason as the last error of the file, when one of that fails.
bool OpenMp4File(CMp4File& mp4, const ZVFilename& file, const ZVString& fileType);
