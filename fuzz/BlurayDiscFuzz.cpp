// A whole Blu-ray folder: the files that the input holds are written, and the disc is scanned. A file is one byte for its folder,
// one for its number, two for its size, and its bytes.

#include "Require.h"
#include "core/bytes/ZVByteCursor.h"
#include "core/string/ZVStringUTF8.h"
#include "disc/bluray/ZVBlurayHelper.h"

#include <cstdint>
#include <filesystem>
#include <fstream>

namespace
{
namespace fs = std::filesystem;

constexpr const char* Folders[] = {"CLIPINF/0000%d.clpi", "PLAYLIST/0000%d.mpls", "STREAM/0000%d.m2ts", "SSIF/0000%d.ssif",
                                   "../disc.inf"};

// The folder of the process, which goes at its end.
class DiscFolder
{
public:
    DiscFolder()
    {
        std::string path = fs::temp_directory_path() / "zv-disc-fuzz-XXXXXX";
        m_root = mkdtemp(path.data());
    }
    ~DiscFolder() { fs::remove_all(m_root); }

    fs::path Make() const
    {
        fs::remove_all(m_root / "BDMV");
        fs::remove(m_root / "disc.inf");
        for (const char* const folder : {"CLIPINF", "PLAYLIST", "STREAM", "SSIF"})
            fs::create_directories(m_root / "BDMV" / folder);
        return m_root / "BDMV";
    }

private:
    fs::path m_root;
};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr int32_t MaximumFiles = 40;

    static const DiscFolder s_folder;
    const fs::path folder = s_folder.Make();
    const ZVByteSpan input(data, static_cast<int64_t>(size));
    ZVByteCursor<std::endian::big, ZVZeroPastEnd> cursor(input);
    for (int32_t count = 0; count < MaximumFiles && cursor.GetPosition() < input.GetSize(); ++count)
    {
        char name[64];
        const char* const format = Folders[cursor.Read<uint8_t>() % std::size(Folders)];
        snprintf(name, sizeof name, format, cursor.Read<uint8_t>() % 10);
        const uint16_t length = cursor.Read<uint16_t>();
        std::ofstream(folder / name, std::ios::binary) << cursor.ReadBytes(length);
    }

    ZVBlurayHelper helper;
    helper.SetFilename(ZVFilename(ZVString::FromUTF8((folder / "index.bdmv").c_str())));
    Require((helper.GetSelected() == nullptr) == helper.Playlists.IsEmpty());
    // The same folder has the same titles in the same order.
    ZVBlurayHelper again;
    again.SetFilename(helper.Filename);
    Require(again.SelectedIndex == helper.SelectedIndex);
    Require(again.Playlists.GetCount() == helper.Playlists.GetCount());
    for (int32_t index = 0; index < helper.Playlists.GetCount(); ++index)
        Require(again.Playlists[index]->Name == helper.Playlists[index]->Name);
    return 0;
}
