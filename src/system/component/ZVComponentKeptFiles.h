#pragma once

#include <cstdint>
#include <filesystem>

// What stays of an installed component when its package is unpacked again. Of components of which one version is kept, nothing
// stays; of the renderer, what belongs to its users: the folder "3dlut" and the files with the extension "bin"; of all others,
// everything. A file of the new package replaces the old one of the same name, except for the renderer's "settings.bin". Links
// stay links and are never followed.
class ZVComponentKeptFiles
{
public:
    using Path = std::filesystem::path;

    // The number is a mapped one. The old component need not exist. The waiting folder is on the same device as the new one.
    ZVComponentKeptFiles(int32_t number, const Path& oldFolder, const Path& newFolder, const Path& waitingFolder);

    // Brings what stays into the new component. The old one does not change: its files get a second name. False when that fails,
    // also because the package has a file in the place of a folder that stays, or the other way around.
    bool Preserve() const;
    // Replaces the renderer's settings in the package by those that were preserved.
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
