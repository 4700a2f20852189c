#pragma once

#include "core/string/ZVString.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct ZVComponent;
class ZVComponentStaging;

// One installation of a component into the data folder: it downloads the package, checks it, unpacks it beside the component's
// place, and only then puts it there. Whenever the process is killed, the old or the new component is whole, and the next
// installation clears away the rest. Any number of installations may run at once.
class ZVComponentInstallation
{
public:
    // The component must have a package.
    explicit ZVComponentInstallation(const ZVComponent& component);

    // Installs the component. False, with a line in the log, when that fails.
    bool Run() const;

    // Clears away what earlier installations of the component left when they were killed, including older versions. Does not
    // wait: if another process is replacing a component, the next call does it.
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
