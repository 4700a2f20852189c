#include "video/codec/CZVAVLibraries.h"

#include "FakeTools.h"
#include "contracts/IZVApplicationInformation.h"
#include "core/ZVToolsPointer.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;

constexpr const char* FileNames[] = {"libavutil-zv.so.59",   "libswresample-zv.so.5", "libavcodec-zv.so.61",
                                     "libavformat-zv.so.61", "libswscale-zv.so.8",    "libavfilter-zv.so.10"};

// Tools with a data folder of the test's own, in which a set of stand-ins for the codec libraries is installed.
class InstalledSet final : public FakeTools, private IZVApplicationInformation
{
public:
    explicit InstalledSet(const char* source = nullptr)
    {
        std::string name = fs::temp_directory_path() / "zv-codec-XXXXXX";
        m_folder = fs::path(mkdtemp(name.data())) / "";
        m_data = ZVString::FromUTF8(m_folder.c_str());
        fs::create_directories(PathOf(""));
        for (const char* file : FileNames)
            if (source != nullptr)
                fs::copy_file(fs::path(source) / file, PathOf(file));
        g_pZVTools = this;
    }
    ~InstalledSet() override
    {
        g_pZVTools = nullptr;
        fs::remove_all(m_folder);
    }

    fs::path PathOf(const char* file) const { return m_folder / "Plugins/linux_avcodec64_v17" / file; }
    IZVApplicationInformation* GetApplicationInformation() override { return this; }

private:
    const wchar_t* GetProductName() override { return L""; }
    const wchar_t* GetInstallDirectory() override { return L""; }
    const wchar_t* GetDataDirectory() override { return m_data; }

    fs::path m_folder;
    ZVString m_data;
};

TEST(CZVAVLibraries, TakesASetThatHasEveryFunction)
{
    const InstalledSet set(ZV_FAKE_CODEC_LIBRARIES "/complete");
    const CZVAVLibraries codec;
    EXPECT_TRUE(codec.Loaded);
    EXPECT_THAT(set.Manager.Lines, testing::Not(testing::Contains(testing::HasSubstr("CZVAVLibraries"))));
    void* const binding = reinterpret_cast<void*>(codec.av_frame_alloc);
    EXPECT_EQ(reinterpret_cast<void*>(CZVAVLibraries().av_frame_alloc), binding) << "the code stays when an object goes";
}

TEST(CZVAVLibraries, RefusesASetThatLacksAFunctionNobodyCalls)
{
    const InstalledSet set(ZV_FAKE_CODEC_LIBRARIES "/complete");
    fs::copy_file(ZV_FAKE_CODEC_LIBRARIES "/lacking/libavcodec-zv.so.61", set.PathOf("libavcodec-zv.so.61"),
                  fs::copy_options::overwrite_existing);
    const CZVAVLibraries codec;
    EXPECT_FALSE(codec.Loaded);
    EXPECT_NE(codec.avcodec_open2, nullptr) << "it stands in front of the missing one";
    EXPECT_EQ(codec.avcodec_fill_audio_frame, nullptr) << "it stands behind";
    EXPECT_THAT(set.Manager.Lines, testing::Contains(testing::HasSubstr("avcodec_close is missing")));
}

TEST(CZVAVLibraries, RefusesASetThatLacksALibrary)
{
    for (const char* missing : FileNames)
    {
        SCOPED_TRACE(missing);
        const InstalledSet set(ZV_FAKE_CODEC_LIBRARIES "/complete");
        // The next version of it is another library.
        fs::rename(set.PathOf(missing), set.PathOf(missing).replace_extension("99"));
        EXPECT_FALSE(CZVAVLibraries().Loaded);
        EXPECT_THAT(set.Manager.Lines, testing::Contains(testing::HasSubstr(missing)));
    }
    // Nothing is taken from elsewhere when the folder is there.
    const InstalledSet empty;
    EXPECT_FALSE(CZVAVLibraries().Loaded);
    for (const char* file : FileNames)
        EXPECT_THAT(empty.Manager.Lines, testing::Contains(testing::HasSubstr(empty.PathOf(file).string())));
}
}
