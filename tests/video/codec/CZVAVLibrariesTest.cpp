#include "video/codec/CZVAVLibraries.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "siblings/tools/ToolsFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;

constexpr const char* FileNames[] = {"libavutil-zv.so.59",   "libswresample-zv.so.5", "libavcodec-zv.so.61",
                                     "libavformat-zv.so.61", "libswscale-zv.so.8",    "libavfilter-zv.so.10"};

// Tools with a data folder of the test's own, in which a set of stand-ins for the codec libraries is installed.
class InstalledSet final : public FakeTools
{
public:
    explicit InstalledSet(const char* source = nullptr)
    {
        fs::create_directories(PathOf(""));
        for (const char* file : FileNames)
            if (source != nullptr)
                fs::copy_file(fs::path(source) / file, PathOf(file));
        m_information.Data = m_data;
        g_pZVTools = this;
    }
    ~InstalledSet() override { g_pZVTools = nullptr; }

    fs::path PathOf(const char* file) const { return m_folder.PathOf("Plugins/linux_avcodec64_v17/") + file; }
    IZVApplicationInformation* GetApplicationInformation() override { return &m_information; }

private:
    const ToolsFolder m_folder;
    const ZVString m_data = m_folder.AsString();
    FakeInformation m_information;
};

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
