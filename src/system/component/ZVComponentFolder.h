#pragma once

#include "core/string/ZVString.h"

struct ZVComponent;

// The folders of components, which are in the folder Plugins of the product's data or below the install path.
namespace ZVComponentFolder
{
// The folder that an installed component is put in, with a "/" at its end.
ZVString GetParent();

// "<package>_v<version>", or empty for a component without a package.
ZVString GetName(const ZVComponent& component);

// The path of a folder by its name, with a "/" at its end: below the product's data, or where a packager has put it when it is
// only there.
ZVString Find(const ZVString& name);
}
