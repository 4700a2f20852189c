#pragma once

#include "system/library/ZVDescriptor.h"

#include <filesystem>
#include <string>

// The folder in which one installation builds a component: "<folder>.<process>-<number>.part" beside the component's own folder.
// No two installations have the same one, and it is deleted with the object. As long as the object lives the folder is locked,
// which tells it from the folders of installations that were killed.
class ZVComponentStaging
{
public:
    using Path = std::filesystem::path;

    // Makes the folder, and if necessary the folder of all components. The name is that of the component's own folder.
    ZVComponentStaging(const Path& components, const std::string& name);
    ~ZVComponentStaging() { Remove(); }
    ZVComponentStaging(const ZVComponentStaging&) = delete;
    ZVComponentStaging& operator=(const ZVComponentStaging&) = delete;

    // False when the folder could not be made; errno tells why.
    bool IsThere() const { return m_isThere; }
    const Path& GetPath() const { return m_path; }
    // The new component, until it is in its place.
    Path GetNew() const { return m_path / "new"; }

    // Waits until what was written is on the disk. False when some of it is lost.
    bool WriteThrough() const;
    // Puts the new component in its place in one step. An old one that was there becomes a part of this folder. When that fails,
    // the result is false and everything is as it was.
    bool PutInPlace(const Path& component);
    // Moves another folder into this one. False when that fails.
    bool TakeAway(const Path& folder);
    // Deletes the folder with everything in it. False when something is still there.
    bool Remove();

    // Whether a path has the form of such a folder's path.
    static bool IsStaging(const Path& path);
    // Whether a package has such folders, of installations that are running or that ended early.
    static bool HasAny(const Path& components, const std::string& package);
    // Deletes the folders of installations of a package that ended early. A component that one of them had taken away, but not
    // yet replaced, is put back. False when another installation of the package is running.
    static bool ClearRemains(const Path& components, const std::string& package);

private:
    Path m_path;
    ZVDescriptor m_lock;
    bool m_isThere = false;
    int m_takenCount = 0;
};
