#pragma once

#include <cstdint>
#include <filesystem>

// What of an installed component stays when its package is unpacked again: of the components with one version nothing, of the
// renderer what belongs to its users, which is the folder "3dlut" and the files with the extension "bin", and of the others
// everything. A file of the new package replaces the old one of its name, but for the renderer's "settings.bin". Links are kept as
// links and never followed.
class ZVComponentKeptFiles
{
public:
    using Path = std::filesystem::path;

    // The old component, which need not be there, the unpacked new one, and a folder beside that for what waits. The number is a
    // mapped one.
    ZVComponentKeptFiles(int32_t number, const Path& oldFolder, const Path& newFolder, const Path& waitingFolder);

    // Brings what stays into the new component, as further names of the old files, so that the old component is as it was. False
    // when that fails, and when a folder would have to stand where the package has a file, or a file where it has a folder.
    bool Preserve() const;
    // Puts the renderer's settings over those of the package.
    bool Restore() const;

private:
    enum class Rule
    {
        Nothing,
        RendererFiles,
        Everything,
    };

    static Rule GetRule(int32_t number);
    bool PreserveSettings() const;
    bool PreserveFolder() const;
    bool Stays(const std::filesystem::directory_entry& entry) const;

    const Rule m_rule;
    const Path m_old;
    const Path m_new;
    const Path m_waitingSettings;
};
