#pragma once

class ZVPropertyMap;
class ZVString;

// Writes what is known of a film besides its thumbnail to a file, as XMLPH in UTF-8 without a mark. False without a path, when the
// size or the frame rate of the film is not known, or with the reason in the log when the file cannot be written.
bool WriteThumbnailMetadata(const ZVPropertyMap& metadata, const ZVString& path);
