// Installs one component, for a test that kills it meanwhile.
//
//   install_component install NUMBER   installs the component, whether it is there or not
//   install_component find NUMBER      installs the component when it is missing, and prints the path of its main file
//
// The exit status is 0 when the component is installed. The data folder and the server are those of the environment.

#include "core/string/ZVStringUTF8.h"
#include "system/component/DependencyInstaller.h"
#include "system/library/ZVSiblingLibraries.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace
{
bool Run(std::string_view command, int32_t number)
{
    if (command == "install")
        return DependencyInstaller::Install(number);
    const ZVString path = DependencyInstaller::GetInstalledFilename(number, true);
    puts(ZVStringUTF8(path));
    return !path.IsEmpty();
}
}

int main(int count, char** arguments)
{
    if (count != 3 || !ZVSiblingLibraries::Get().LoadTools())
        return 2;
    const bool isInstalled = Run(arguments[1], atoi(arguments[2]));
    ZVSiblingLibraries::Get().UnloadAll();
    return isInstalled ? 0 : 1;
}
