#pragma once

class ZVString;

// Gives every configuration named Release or Debug of all Xcode projects (*.pbxproj) below a folder the build settings that the
// product needs: a setting that is there gets its value where it stands, and one that is missing is added at the end. The files are
// taken as the text that Xcode writes, with its white space, and not as property lists. They are UTF-8, whole at any time, and
// written even if nothing in them changes; one without build configurations is not written.
void UpdateBuildSettings(const ZVString& folder);
