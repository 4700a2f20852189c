#include "siblings/image/ImageFixture.h"

#include <climits>
#include <random>

namespace
{
class CImageTest : public ImageTest
{
};

TEST_F(CImageTest, ShowsPixelsOfAnotherUntilItChangesThem)
{
    const Frame original = Frame::MakeSmooth(33, 7, 5);
    Frame frame = original;
    const ImagePointer image = Create();
    const ImagePointer copy = Create();
    ASSERT_TRUE(frame.Show(*image));
    EXPECT_EQ(image->GetPixels(), frame.Pixels.data());
    ASSERT_TRUE(copy->CopyFrom(*image));
    frame.Pixels[0] = {9, 9, 9, 9};
    EXPECT_EQ(Frame::MakeOf(*image).At(0, 0), frame.At(0, 0)) << "it shows what its owner draws";
    EXPECT_EQ(Frame::MakeOf(*copy), original) << "a copy is its own";

    frame = original;
    ASSERT_TRUE(image->SetAlphaFill(77, 0, 0));
    EXPECT_EQ(frame, original) << "the owner's pixels were changed";
    EXPECT_EQ(Frame::MakeOf(*image), Frame::MakeSmooth(33, 7, 77));
    for (const int32_t alpha : {-1, 256})
        EXPECT_FALSE(image->SetAlphaFill(alpha, 0, 0)) << alpha;
    ASSERT_TRUE(image->CopyFrom(*image));
    EXPECT_EQ(Frame::MakeOf(*image), Frame::MakeSmooth(33, 7, 77)) << "a copy of itself";
}

TEST_F(CImageTest, TakesRowsThatGoUpAndThatAreFarApart)
{
    const Frame frame = Frame::MakeSmooth(6, 5);
    const Frame upsideDown = Frame::Make(6, 5, [&](int32_t x, int32_t y) { return frame.At(x, 4 - y); });
    const Frame wide = Frame::Make(11, 5, [&](int32_t x, int32_t y) { return x < 6 ? frame.At(x, y) : Pixel {1, 2, 3, 4}; });
    const ImagePointer up = Create();
    const ImagePointer apart = Create();
    ASSERT_TRUE(up->SetFromPixels(&upsideDown.Pixels[24], 6, 5, -24, 0));
    ASSERT_TRUE(apart->SetFromPixels(wide.Pixels.data(), 6, 5, 44, 0));
    for (IZVImage* const image : {up.get(), apart.get()})
    {
        const ImagePointer copy = Create();
        ASSERT_TRUE(copy->CopyFrom(*image));
        EXPECT_EQ(Frame::MakeOf(*copy), frame);
        for (const char* name : {"a.png", "a.bmp", "a.webp", "a.jpg"})
        {
            ASSERT_TRUE(image->Save(At(name)));
            EXPECT_LT(Load(name).DistanceTo(frame), 8) << name;
        }
    }
}

TEST_F(CImageTest, RefusesSizesThatNoPictureHas)
{
    const Frame frame = Frame::MakeSmooth(4, 4);
    const ImagePointer image = Create();
    ASSERT_TRUE(frame.Show(*image));
    struct Size
    {
        const void* Pixels;
        int32_t Width, Height, Stride;
    };
    for (const Size& size : {
             Size {nullptr, 4,       4,  16     },
              Size {"x",     0,       4,  16     },
              Size {"x",     4,       -1, 16     },
              Size {"x",     4,       4,  15     },
              Size {"x",     4,       4,  -15    },
             Size {"x",     INT_MAX, 1,  INT_MIN}
    })
        EXPECT_FALSE(image->SetFromPixels(size.Pixels, size.Width, size.Height, size.Stride, 0))
            << size.Width << "x" << size.Height << " " << size.Stride;
    EXPECT_EQ(Frame::MakeOf(*image), frame) << "what failed changed the picture";
}

TEST_F(CImageTest, TurnsClockwise)
{
    // Not a multiple of any block, and longer than one.
    const Frame frame = Frame::MakeSmooth(67, 41);
    struct Turn
    {
        std::vector<int32_t> Degrees;
        Frame Turned;
    };
    const std::vector<Turn> turns = {
        {{0, 360, -720}, frame                                           },
        { {90, -270, 450},        Frame::Make(41, 67, [&](int32_t x, int32_t y) { return frame.At(y, 40 - x); })},
        {      {180, -180, 540},       Frame::Make(67, 41, [&](int32_t x, int32_t y) { return frame.At(66 - x, 40 - y); })},
        { {270, -90, 2147483430}, Frame::Make(41, 67, [&](int32_t x, int32_t y) { return frame.At(66 - y, x); })},
    };
    for (const Turn& turn : turns)
        for (const int32_t degrees : turn.Degrees)
        {
            const ImagePointer image = Create();
            ASSERT_TRUE(frame.Show(*image));
            EXPECT_TRUE(image->Rotate(degrees, 100, 0)) << degrees;
            EXPECT_EQ(Frame::MakeOf(*image), turn.Turned) << degrees;
        }
    // The corner that was at the bottom left is at the top left after a quarter.
    EXPECT_EQ(turns[1].Turned.At(0, 0), frame.At(0, 40));
    const ImagePointer image = Create();
    ASSERT_TRUE(frame.Show(*image));
    for (const int32_t degrees : {1, 45, -89})
        EXPECT_FALSE(image->Rotate(degrees, 100, 0)) << degrees;
    EXPECT_EQ(Frame::MakeOf(*image), frame);
}

Pixel Gray(int32_t value)
{
    const auto byte = static_cast<uint8_t>(std::clamp(value, 0, 255));
    return {byte, byte, byte, 0};
}

TEST_F(CImageTest, KnowsWhereThereIsNothingToSee)
{
    constexpr int32_t width = 1920;
    constexpr int32_t height = 1080;
    std::mt19937 random(1);
    std::normal_distribution<double> grain(0, 15);
    const auto noise = [&] { return static_cast<int32_t>(grain(random)); };
    const auto isIn = [](int32_t x, int32_t y, int32_t right, int32_t bottom)
    { return x >= 900 && x < right && y >= 500 && y < bottom; };
    struct Case
    {
        const char* Name;
        bool IsBlank;
        Frame Picture;
    };
    // clang-format off
    const Case cases[] = {
        {"black",                   true,  Frame::Make(width, height, [](int32_t, int32_t) { return Gray(0); })},
        {"one colour",              true,  Frame::Make(width, height, [](int32_t, int32_t) { return Pixel {9, 90, 200, 0}; })},
        {"a faint fade",            true,  Frame::Make(width, height, [](int32_t, int32_t y) { return Gray(100 + y / 40); })},
        {"grain",                   true,  Frame::Make(width, height, [&](int32_t, int32_t) { return Gray(120 + noise()); })},
        {"a speck",                 true,
         Frame::Make(width, height, [&](int32_t x, int32_t y) { return Gray(isIn(x, y, 924, 524) ? 255 : 0); })},
        {"a title in grain",        false,
         Frame::Make(width, height, [&](int32_t x, int32_t y) { return Gray((isIn(x, y, 1100, 530) ? 200 : 40) + noise()); })},
        {"a blue title",            false,
         Frame::Make(width, height, [&](int32_t x, int32_t y) { return Pixel {isIn(x, y, 1100, 530) ? uint8_t {90} : uint8_t {60}, 60, 60, 0}; })},
        {"a picture",               false, Frame::MakeSmooth(width, height)},
        {"a small picture",         false, Frame::MakeSmooth(50, 30)},
        {"a picture of one pixel",  true,  Frame::MakeSmooth(1, 1)},
        {"a wide cell of white",    true,  Frame::Make(200000, 1, [](int32_t, int32_t) { return Gray(255); })},
    };
    // clang-format on
    for (const Case& test : cases)
    {
        const ImagePointer image = Create();
        ASSERT_TRUE(test.Picture.Show(*image));
        EXPECT_EQ(image->IsBlank(-1), test.IsBlank) << test.Name;
    }
}
}
