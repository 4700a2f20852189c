#include "disc/bluray/BlurayStreamClipFile.h"

#include "core/bytes/ZVByteSpan.h"
#include "core/string/ZVStringUTF8.h"
#include "disc/bluray/BlurayBytes.h"

#include <gtest/gtest.h>
#include <map>

namespace
{
using namespace BlurayBytes;

using Languages = std::map<int, std::string>;

// What a clip file has after a scan of these bytes.
class ScannedClip : public BlurayStreamClipFile
{
public:
    explicit ScannedClip(const std::string& bytes) : BlurayStreamClipFile(L"00001.clpi")
    {
        Scan(ZVByteSpan(bytes.data(), static_cast<int64_t>(bytes.size())));
    }

    // The language codes by PID.
    Languages GetLanguages() const
    {
        Languages languages;
        for (const auto& entry : Streams)
            languages[entry.Key] = ZVStringUTF8(entry.Value->Language()).Get();
        return languages;
    }
};

const std::string Whole = Clip({
    Video(),
    Audio(0x1100, "eng"),
    Graphics(0x1200, "deu"),
    {0x1800, 0x92,
                     "\x01"
     "fra"}
});

TEST(BlurayStreamClipFile, HasNoStreamsWhereTheBlockDoesNotFit)
{
    std::string pastTheEnd = Whole;
    pastTheEnd.replace(12, 4, Number(Whole.size() + 1, 4));
    std::string negative = Whole;
    negative.replace(12, 4, "\xff\xff\xff\xff");
    std::string tooLong = Whole;
    tooLong.replace(16, 4, Number(Whole.size() - 19, 4));
    std::string huge = Whole;
    huge.replace(16, 4, "\xff\xff\xff\xff");
    for (const std::string& bytes : {pastTheEnd, negative, tooLong, huge, Whole.substr(0, 15), Whole.substr(0, 8)})
    {
        const ScannedClip file(bytes);
        EXPECT_TRUE(file.Scanned);
        EXPECT_EQ(file.GetLanguages(), Languages());
    }
}

TEST(BlurayStreamClipFile, FindsEachEntryByTheLengthOfTheOneBefore)
{
    // Codings that give no stream, attributes that are not known, and two streams of one PID.
    const ScannedClip file(Clip({
        {1, 0x20, "\x61\x30"},
        {2, 0x05, ""        },
        {3, 0x81,
         "\x61"
         "engmore"          },
        Audio(4, "deu"),
        Audio(4, "fra")
    }));
    EXPECT_EQ(file.GetLanguages(), Languages({
                                       {3, "eng"},
                                       {4, "fra"}
    }));
}

TEST(BlurayStreamClipFile, ReadsAsFarAsTheBlockGoes)
{
    // The count says more than there are: what is past the end is 0 and gives no stream.
    std::string bytes = Clip({Audio(1, "eng"), Audio(2, "deu")});
    bytes[28] = 9;
    EXPECT_EQ(ScannedClip(bytes).GetLanguages(), Languages({
                                                     {1, "eng"},
                                                     {2, "deu"}
    }));
    // A block that ends within the language of its last stream.
    std::string cut = bytes.substr(0, bytes.size() - 2);
    cut.replace(16, 4, Number(cut.size() - 20, 4));
    EXPECT_EQ(ScannedClip(cut).GetLanguages(), Languages({
                                                   {1, "eng"},
                                                   {2, ""   }
    }));
    // A length in the last place moves on by one byte.
    cut = bytes.substr(0, 20 + 10 + 3) + "\x81";
    cut.resize(33);
    cut.replace(16, 4, Number(cut.size() - 20, 4));
    EXPECT_EQ(ScannedClip(cut).GetLanguages(), Languages());
}

}
