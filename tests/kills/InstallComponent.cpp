// Installs one component, for a test that kills it meanwhile: "install_component install NUMBER" whether it is there or not,
// "install_component find NUMBER" when it is missing. The exit status is 0 when the component is installed. The data folder and
// the server are those of the environment.

#include "system/component/DependencyInstaller.h"
#include "system/library/ZVSiblingLibraries.h"

#include <cstdlib>
#include <string_view>

int main(int count, char** arguments)
{
    if (count != 3 || !ZVSiblingLibraries::Get().LoadTools())
        return 2;
    const int32_t number = atoi(arguments[2]);
    const bool isInstalled = std::string_view(arguments[1]) == "install"
                                 ? DependencyInstaller::Install(number)
                                 : !DependencyInstaller::GetInstalledFilename(number, true).IsEmpty();
    ZVSiblingLibraries::Get().UnloadAll();
    return isInstalled ? 0 : 1;
}
