#pragma once

#include "system/library/ZVDescriptor.h"

#include <filesystem>
#include <string>

// The folder in which one installation builds a component before the component takes its place: "<folder>.<process>-<number>.part"
// beside the component's own folder, and deleted with the object. No two installations have the same one. While the object lives
// the folder is locked, so that the folder of an installation that was killed can be told from one at work.
class ZVComponentStaging
{
public:
    using Path = std::filesystem::path;

    // Makes the folder, and the folder of the components when there is none. The name is that of the component's folder.
    ZVComponentStaging(const Path& components, const std::string& name);
    ~ZVComponentStaging() { Remove(); }
    ZVComponentStaging(const ZVComponentStaging&) = delete;
    ZVComponentStaging& operator=(const ZVComponentStaging&) = delete;

    // False when the folder could not be made; errno tells why.
    bool IsThere() const { return m_isThere; }
    const Path& GetPath() const { return m_path; }
    // The new component, until it is in its place.
    Path GetNew() const { return m_path / "new"; }

    // Has the disk take what was written. False when some of that is lost; a file system that cannot tell counts as good.
    bool WriteThrough() const;
    // Puts the new component in its place in one step. An old one that is there goes on as a part of this folder. False, and
    // everything as it was, when that cannot be done.
    bool PutInPlace(const Path& component);
    // Makes another folder a part of this one. False when that cannot be done.
    bool TakeAway(const Path& folder);
    // Deletes the folder with all that is in it. False when some of that is still there.
    bool Remove();

    // Whether a path has the form of such a folder's.
    static bool IsStaging(const Path& path);
    // Whether a package has such folders, of installations at work or of those that ended early.
    static bool HasAny(const Path& components, const std::string& package);
    // Deletes the folders of a package's installations that ended early. A component that such an installation was about to
    // replace is put back. False when another installation of the package is at work.
    static bool ClearRemains(const Path& components, const std::string& package);

private:
    Path m_path;
    ZVDescriptor m_lock;
    bool m_isThere = false;
    int m_takenCount = 0;
};
