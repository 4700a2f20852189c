#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The large pieces that the product does not ship: where they are, and how they get there. A component is a number; a generic one
// stands for the form of this platform. Its folder is "<package>_v<version>" in the folder Plugins of the product's data, or
// below the install path where a packager has put it. A failure is a false or empty result with a line in the log, and leaves a
// working component as it was.
namespace DependencyInstaller
{
// The decoder libraries.
inline constexpr int32_t AVCodec = 15;

// By the table of components; empty for an unknown number.
ZVString GetPackageName(int32_t id);
ZVString GetDisplayName(int32_t id);
ZVString GetMainFile(int32_t id);
ZVString GetVersion(int32_t id);

// The folder of a component with a "/" at its end, whether it exists or not; empty when the component has no package. Takes no
// lock and writes nothing.
ZVString GetFolder(int32_t id);

// The path of the main file of an installed component. One that is missing is installed when asked for; that may first wait up to
// two minutes for another process that is installing. Otherwise, and when it fails, the result is empty. For a tool that is found
// by its name alone, the result is that name.
ZVString GetInstalledFilename(int32_t id, bool install);

// Downloads a component and puts it in its folder, replacing older versions. The server is the variable ZV_COMPONENT_SERVER or
// else the setting "Server" of the section "Dependencies": an address or a folder in which the archives lie. Nothing old is
// touched before the new component is complete: its archive is whole, matches the checksum beside it, if there is one, has
// nothing in it that would leave the folder, and is unpacked with its main file. Whenever the process ends, the old or the new
// component is whole; what is left over goes with the next installation.
bool Install(int32_t id);
}
