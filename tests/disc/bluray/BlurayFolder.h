#pragma once

#include "core/string/ZVString.h"
#include "disc/bluray/BlurayBytes.h"

#include <filesystem>
#include <fstream>

// A temporary BDMV folder.
class BlurayFolder
{
public:
    BlurayFolder()
    {
        std::string path = std::filesystem::temp_directory_path() / "zv-bluray-XXXXXX";
        m_root = mkdtemp(path.data());
        for (const char* folder : {"CLIPINF", "PLAYLIST", "STREAM"})
            std::filesystem::create_directories(m_root / "BDMV" / folder);
    }
    ~BlurayFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_root, ignored);
    }
    BlurayFolder(const BlurayFolder&) = delete;
    BlurayFolder& operator=(const BlurayFolder&) = delete;

    // The path of a file below the BDMV folder.
    std::string PathOf(const std::string& name) const { return m_root / "BDMV" / name; }
    ZVString TextOf(const std::string& name) const { return ZVString::FromUTF8(PathOf(name).c_str()); }

    void Write(const std::string& name, const std::string& content) const
    {
        std::ofstream(PathOf(name), std::ios::binary) << content;
    }

    // A clip with its stream file.
    void AddClip(const std::string& name, const std::vector<BlurayBytes::Stream>& streams = {BlurayBytes::Video()}) const
    {
        Write("CLIPINF/" + name + ".clpi", BlurayBytes::Clip(streams));
        Write("STREAM/" + name + ".m2ts", "");
    }
    void AddPlaylist(const std::string& name, const std::vector<BlurayBytes::Item>& items,
                     const std::vector<BlurayBytes::Mark>& marks = {}) const
    {
        Write("PLAYLIST/" + name + ".mpls", BlurayBytes::Playlist(items, marks));
    }

private:
    std::filesystem::path m_root;
};
