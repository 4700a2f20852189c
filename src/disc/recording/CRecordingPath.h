#pragma once

#include "core/string/ZVString.h"
#include "system/filename/ZVFilename.h"

#include <cstdint>

// The paths that the files of a recording have in its stub.
namespace CRecordingPath
{
// True for a path of this machine: one without "://", or with a step before it, which ZVFilename takes for an address.
bool IsLocal(const ZVString& path);

// What the paths in a stub are relative to.
class Base
{
public:
    explicit Base(const ZVFilename& stub);

    // The absolute form of a path in the stub. An empty path and one that begins with "/" stay as they are, and so do all paths
    // of a stub that comes from a server. Any other is joined to the stub's folder, and its steps "." and ".." are resolved.
    ZVString MakeAbsolute(const ZVString& path) const;

private:
    bool m_keepsPaths;
    ZVString m_root;    // the scheme and the host of an address; empty for a local folder
    ZVString m_folder;  // the folder below that
};
}
