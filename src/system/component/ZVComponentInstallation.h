#pragma once

#include "core/string/ZVString.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct ZVComponent;
class ZVComponentStaging;

// One installation of a component into the data folder: it downloads the package, checks it, unpacks it beside the component's
// place, and only then puts it there. Whenever the process ends, the old or the new component is whole, and the next installation
// clears away the rest. Any number of installations may be at work at once.
class ZVComponentInstallation
{
public:
    // Of a component that has a package.
    explicit ZVComponentInstallation(const ZVComponent& component);

    // Installs the component. False, with a line in the log, when that fails.
    bool Run() const;

    // Clears away what earlier installations of the component left when they ended too soon, older versions included. Waits for
    // nobody: where another process holds the components, the next call does it.
    void FinishEarlier() const;

private:
    using Path = std::filesystem::path;

    std::unique_ptr<ZVComponentStaging> Prepare() const;
    void ClearRemains() const;
    bool IsTrusted(const ZVString& url, const ZVString& archive) const;
    bool MatchesChecksum(const ZVString& url, const ZVString& archive) const;
    bool Replace(const ZVString& archive, ZVComponentStaging& staging) const;
    bool DeleteOld(ZVComponentStaging& staging) const;
    std::vector<Path> FindOldVersions() const;
    std::string GetPackage() const;
    bool HasMainFile(const Path& folder) const;

    const ZVComponent& m_component;
    const ZVString m_folderName;
    const ZVString m_archiveName;
    const Path m_components;  // the folder that all components are in
    const Path m_folder;
};
