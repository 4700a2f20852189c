#include "siblings/image/ImageFixture.h"
#include "system/library/ZVDescriptor.h"

#include <endian.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <zlib.h>

namespace
{
using testing::HasSubstr;

constexpr uid_t Nobody = 65534;

class CImageFileTest : public ImageTest
{
protected:
    static bool HasFFmpeg() { return system("command -v ffmpeg > /dev/null") == 0; }
    // Runs ffmpeg in the folder. False if it fails.
    bool RunFFmpeg(const std::string& arguments) const
    {
        return system(("cd " + m_folder.PathOf("") + " && ffmpeg -v error -nostdin -y " + arguments).c_str()) == 0;
    }
    // The picture of a file, decoded by ffmpeg.
    Frame DecodeByFFmpeg(const std::string& name, int32_t width, int32_t height) const
    {
        EXPECT_TRUE(RunFFmpeg("-i " + name + " -f rawvideo -pix_fmt bgra raw")) << name;
        return Frame::MakeOfBytes(width, height, m_folder.Read("raw"));
    }
    // Writes a number into a file.
    template <class Integer>
    void Patch(const std::string& name, size_t position, Integer value)
    {
        std::string bytes = m_folder.Read(name);
        memcpy(&bytes[position], &value, sizeof value);
        m_folder.Write(name, bytes);
    }
    void ExpectRefused(const std::string& name, const std::string& reason)
    {
        const Frame before = Frame::MakeSmooth(3, 3);
        const ImagePointer image = Create();
        ASSERT_TRUE(before.Show(*image));
        EXPECT_FALSE(LoadInto(*image, name)) << name;
        EXPECT_THAT(TakeLog(), HasSubstr(reason)) << name;
        EXPECT_EQ(Frame::MakeOf(*image), before) << name;
    }
};

struct Saved
{
    const char* Name;
    uint8_t Alpha;
    // The mean distance that the format may have.
    double Loss;
    const char* Start;
};

constexpr Saved SavedFiles[] = {
    {"opaque.png",  255, 0,   "\x89PNG" },
    {"clear.PNG",   100, 0,   "\x89PNG" },
    {"opaque.bmp",  255, 0,   "BM"      },
    {"clear.bmp",   100, 0,   "BM"      },
    {"photo.jpg",   255, 1.5, "\xff\xd8"},
    {"photo.JPeG",  255, 1.5, "\xff\xd8"},
    {"opaque.webp", 255, 2,   "RIFF"    },
    {"clear.webp",  100, 2,   "RIFF"    },
};

TEST_F(CImageFileTest, SavesWhatOthersReadTheSame)
{
    if (!HasFFmpeg())
        GTEST_SKIP() << "ffmpeg is not installed";
    for (const Saved& saved : SavedFiles)
    {
        const Frame frame = Frame::MakeSmooth(161, 90, saved.Alpha);
        ASSERT_TRUE(Save(frame, saved.Name)) << saved.Name << TakeLog();
        EXPECT_THAT(m_folder.Read(saved.Name), testing::StartsWith(saved.Start));
        EXPECT_LE(DecodeByFFmpeg(saved.Name, 161, 90).DistanceTo(frame), saved.Loss) << saved.Name;
        EXPECT_LE(Load(saved.Name).DistanceTo(frame), saved.Loss) << saved.Name;
    }
    EXPECT_EQ(m_folder.Read("opaque.png")[25], 2) << "a PNG without transparent pixels has the colour type of no alpha";
}

TEST_F(CImageFileTest, ReadsWhatOthersWrite)
{
    if (!HasFFmpeg())
        GTEST_SKIP() << "ffmpeg is not installed";
    struct Written
    {
        const char* Arguments;
        const char* Name;
        double Loss;
    };
    constexpr Written files[] = {
        {"-pix_fmt rgb24",                            "rgb.png",     0  },
        {"-pix_fmt rgba",                             "rgba.png",    0  },
        {"-pix_fmt rgb24 -flags ildct",               "passes.png",  0  },
        {"-pix_fmt pal8",                             "palette.png", 0  },
        {"-pix_fmt monob",                            "bits.png",    0  },
        {"-pix_fmt gray",                             "gray.png",    0  },
        {"-pix_fmt ya8",                              "ya.png",      0  },
        {"-pix_fmt rgb48be",                          "rgb16.png",   1  },
        {"-pix_fmt gray16be",                         "gray16.png",  1  },
        {"-pix_fmt bgr24",                            "rgb.bmp",     0  },
        {"-pix_fmt bgra",                             "rgba.bmp",    0  },
        {"-pix_fmt rgb565le",                         "565.bmp",     3  },
        {"-pix_fmt rgb555le",                         "555.bmp",     3  },
        {"-pix_fmt pal8",                             "palette.bmp", 0  },
        {"-pix_fmt gray",                             "gray.bmp",    0  },
        {"-pix_fmt monob",                            "bits.bmp",    0  },
        {"-pix_fmt yuvj444p -q:v 2",                  "full.jpg",    1.5},
        {"-vf gblur=8 -pix_fmt yuvj420p -q:v 2",      "half.jpg",    2  },
        {"-pix_fmt gray -q:v 2",                      "gray.jpg",    1  },
        {"-c:v libwebp -lossless 1",                  "exact.webp",  0  },
        {"-vf gblur=8 -c:v libwebp -pix_fmt yuv420p", "photo.webp",  2  },
    };
    for (const Written& file : files)
    {
        ASSERT_TRUE(RunFFmpeg("-f lavfi -i testsrc=s=83x61 -frames:v 1 " + std::string(file.Arguments) + " " + file.Name));
        const Frame loaded = Load(file.Name);
        EXPECT_LE(loaded.DistanceTo(DecodeByFFmpeg(file.Name, 83, 61)), file.Loss) << file.Name << TakeLog();
    }
}

TEST_F(CImageFileTest, ReadsRunLengths)
{
    // 4 by 3 pixels of 8 bits with 3 colours, from the bottom: a run, single ones, the end of the row, a jump.
    const std::string header("BM\0\0\0\0\0\0\0\0\x42\0\0\0"
                             "\x28\0\0\0\4\0\0\0\3\0\0\0\1\0\x08\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\3\0\0\0\0\0\0\0"
                             "\x0a\x0b\x0c\0\x1a\x1b\x1c\0\x2a\x2b\x2c\0",
                             66);
    m_folder.Write("runs.bmp", header + std::string("\4\1\0\0"
                                                    "\0\3\2\1\2\0\0\0"
                                                    "\0\2\1\0"
                                                    "\x09\2"
                                                    "\0\1",
                                                    20));
    const Frame picture = Load("runs.bmp");
    ASSERT_EQ(picture.Width, 4) << TakeLog();
    constexpr const char* rows[] = {"0222", "2120", "1111"};
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 4; ++x)
            EXPECT_EQ(picture.At(x, y)[0], (rows[y][x] - '0') * 16 + 10) << x << " " << y;
    EXPECT_EQ(picture.At(1, 0), (Pixel {0x2a, 0x2b, 0x2c, 255}));
}

TEST_F(CImageFileTest, MakesLargePicturesFit)
{
    const Frame frame = Frame::MakeSmooth(1000, 400);
    struct Fit
    {
        ZVImageSize Maximum;
        int32_t Width, Height;
    };
    constexpr Fit fits[] = {
        {{400, 400},   400,  160},
        {{0, 100},     250,  100},
        {{1000, 399},  998,  399},
        {{77, -1},     77,   31 },
        {{1, 1},       1,    1  },
        {{1000, 400},  1000, 400},
        {{5000, 5000}, 1000, 400},
    };
    for (const char* name : {"a.png", "a.jpg", "a.webp", "a.bmp"})
    {
        ASSERT_TRUE(Save(frame, name));
        for (const Fit& fit : fits)
        {
            const Frame loaded = Load(name, fit.Maximum);
            EXPECT_EQ(loaded.Width, fit.Width) << name;
            EXPECT_EQ(loaded.Height, fit.Height) << name;
            // One pixel has no corners.
            const double distance = fit.Width == 1 ? 0 : loaded.DistanceTo(Frame::MakeSmooth(fit.Width, fit.Height));
            EXPECT_LT(distance, 5) << name << " " << fit.Width;
        }
    }
    // Two opaque red pixels, a clear green one and a half clear blue one.
    const Frame four = {
        4, 1, {{0, 0, 240, 255}, {0, 0, 240, 255}, {0, 255, 0, 0}, {200, 0, 0, 128}}
    };
    ASSERT_TRUE(Save(four, "four.png"));
    EXPECT_EQ(Load("four.png",
                   {
                       2, 2
    }),
              (Frame {2, 1, {{0, 0, 240, 255}, {200, 0, 0, 64}}}));
}

TEST_F(CImageFileTest, RefusesWhatIsTooLargeByItsHeader)
{
    for (const char* name : {"a.png", "a.jpg", "a.webp", "a.bmp"})
        ASSERT_TRUE(Save(Frame::MakeSmooth(16, 16), name));
    for (const size_t position : {16, 20})
        Patch("a.png", position, htobe32(20000));
    const std::string png = m_folder.Read("a.png");
    Patch("a.png", 29, htobe32(static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(&png[12]), 17))));
    const size_t frameStart = m_folder.Read("a.jpg").find("\xff\xc0");
    for (const size_t position : {5, 7})
        Patch("a.jpg", frameStart + position, htobe16(20000));
    for (const size_t position : {18, 22})
        Patch("a.bmp", position, 20000);
    for (const size_t position : {26, 28})
        Patch("a.webp", position, uint16_t {16000});
    for (const char* name : {"a.png", "a.jpg", "a.bmp"})
        ExpectRefused(name, "it has 20000 by 20000 pixels");
    ExpectRefused("a.webp", "it has 16000 by 16000 pixels");
}

// A chunk of a PNG file. Its content is all zeros, or compressed zeros after a keyword.
std::string MakeChunk(const std::string& type, size_t size, bool isCompressed)
{
    std::string body(size, '\0');
    if (isCompressed)
    {
        uLongf count = compressBound(size);
        std::string packed(count, '\0');
        compress(reinterpret_cast<Bytef*>(packed.data()), &count, reinterpret_cast<const Bytef*>(body.data()), size);
        body = std::string("Key\0\0", 5) + packed.substr(0, count);
    }
    const uint32_t length = htobe32(static_cast<uint32_t>(body.size()));
    body.insert(0, type);
    const uint32_t sum = htobe32(static_cast<uint32_t>(crc32_z(0, reinterpret_cast<const Bytef*>(body.data()), body.size())));
    return std::string(reinterpret_cast<const char*>(&length), 4) + body + std::string(reinterpret_cast<const char*>(&sum), 4);
}

TEST_F(CImageFileTest, PassesOverChunksOfAnySize)
{
    const Frame frame = Frame::MakeSmooth(16, 16);
    ASSERT_TRUE(Save(frame, "a.png"));
    constexpr size_t headerEnd = 33;
    const std::string file = m_folder.Read("a.png");
    std::string chunks = MakeChunk("iTXt", 12'000'000, false) + MakeChunk("prVt", 12'000'000, false);
    for (const char* type : {"zTXt", "zTXt", "iCCP", "zTXt"})
        chunks += MakeChunk(type, 30'000'000, true);
    m_folder.Write("a.png", file.substr(0, headerEnd) + chunks + file.substr(headerEnd));
    EXPECT_EQ(Load("a.png"), frame) << TakeLog();
}

TEST_F(CImageFileTest, RefusesWhatIsNoPicture)
{
    m_folder.Write("text", "This is no picture, but it is long enough to be one.");
    m_folder.Write("empty.png", "");
    m_folder.Write("start.jpg", "\xff\xd8\xff");
    m_folder.Write("start.png", "\x89PNG\r\n\x1a\n");
    m_folder.Write("folder.png/file", "");
    m_folder.Write("start.webp", std::string("RIFF\x20\0\0\0WEBPVP8 ", 16));
    ASSERT_EQ(mkfifo(m_folder.PathOf("pipe.png").c_str(), 0600), 0);
    ASSERT_EQ(truncate((m_folder.Write("huge.bmp", "BM"), m_folder.PathOf("huge.bmp").c_str()), 1LL << 32), 0);
    ExpectRefused("text", "it is no PNG, JPEG, WebP or BMP file");
    ExpectRefused("empty.png", "it is no PNG, JPEG, WebP or BMP file");
    ExpectRefused("start.jpg", "is not read: ");
    ExpectRefused("start.png", "it is cut");
    ExpectRefused("start.webp", "libwebp reports error");
    ExpectRefused("folder.png", "it is no plain file");
    ExpectRefused("pipe.png", "it is no plain file");
    ExpectRefused("huge.bmp", "it is too large");
    ExpectRefused("missing.png", "Error 2 opening");
}

TEST_F(CImageFileTest, OfACutFileTakesAPictureThatIsMostlyThere)
{
    const Frame frame = Frame::MakeSmooth(640, 480);
    for (const char* name : {"a.jpg", "a.png", "a.webp", "a.bmp"})
    {
        ASSERT_TRUE(Save(frame, name));
        const std::string whole = m_folder.Read(name);
        const bool isForgiving = std::string(name) == "a.jpg";
        m_folder.Write("cut", whole.substr(0, whole.size() * 9 / 10));
        EXPECT_EQ(Load("cut").Width, isForgiving ? 640 : 0) << name;
        EXPECT_THAT(TakeLog(), HasSubstr(isForgiving ? "is damaged: Premature end of JPEG file" : "is not read: ")) << name;
        m_folder.Write("cut", whole.substr(0, whole.size() / 3));
        ExpectRefused("cut", "is not read: ");
    }
}

TEST_F(CImageFileTest, SavesNothingThatIsNotWhole)
{
    const Frame frame = Frame::MakeSmooth(300, 300);
    for (const char* name : {"a.gif", "a", "png", "a.png.tmp"})
    {
        EXPECT_FALSE(Save(frame, name)) << name;
        EXPECT_THAT(TakeLog(), HasSubstr("the extension of no picture format"));
        EXPECT_FALSE(m_folder.Has(name)) << name;
    }
    EXPECT_FALSE(Save(frame, "missing/a.png"));
    EXPECT_THAT(TakeLog(), HasSubstr("Error 2 saving"));
    struct Long
    {
        const char* Name;
        int32_t Width;
        const char* Reason;
    };
    for (const Long& side : {
             Long {"a.jpg",  65501, "Maximum supported image dimension is 65500 pixels"},
             Long {"a.webp", 16384, "a side has more than 16383 pixels"                }
    })
    {
        EXPECT_FALSE(Save(Frame::MakeSmooth(side.Width, 1), side.Name));
        EXPECT_THAT(TakeLog(), HasSubstr(side.Reason));
        EXPECT_FALSE(m_folder.Has(side.Name));
        EXPECT_TRUE(Save(Frame::MakeSmooth(side.Width - 1, 1), side.Name)) << side.Name << TakeLog();
    }
}

TEST_F(CImageFileTest, AFailedSaveLeavesTheOldFile)
{
    if (geteuid() != 0 || unshare(CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        GTEST_SKIP() << "neither another user nor a full disk can be had here";
    const Frame small = Frame::MakeSmooth(10, 10);
    const Frame large = Frame::MakeSmooth(400, 400);
    const std::string disk = m_folder.PathOf("disk");
    std::filesystem::create_directory(disk);
    ASSERT_EQ(mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k"), 0);
    ASSERT_TRUE(Save(small, "disk/a.bmp"));
    EXPECT_FALSE(Save(large, "disk/a.bmp"));
    EXPECT_THAT(TakeLog(), HasSubstr("Error 28 saving")) << "the disk is not full";
    EXPECT_FALSE(Save(large, "disk/b.bmp"));
    EXPECT_EQ(Load("disk/a.bmp"), small);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk), {}), 1) << "something is left of a file";

    ASSERT_EQ(chmod(disk.c_str(), 0555), 0);
    ASSERT_EQ(chmod(m_folder.PathOf("").c_str(), 0755), 0);
    ASSERT_EQ(seteuid(Nobody), 0);
    EXPECT_FALSE(Save(small, "disk/c.bmp"));
    EXPECT_FALSE(Save(small, "disk/a.bmp"));
    EXPECT_THAT(TakeLog(), HasSubstr("Error 13 saving"));
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_EQ(Load("disk/a.bmp"), small);
    umount(disk.c_str());
}
}
