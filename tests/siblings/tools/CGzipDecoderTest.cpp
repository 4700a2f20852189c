#include "siblings/tools/compression/CCompression.h"

#include "ToolsFolder.h"
#include "contracts/ZVReleasePointer.h"

#include <string>
#include <zlib.h>

namespace
{
// One gzip member, made with zlib's own compressor.
std::string Compress(const std::string& text)
{
    const ToolsFolder folder;
    const gzFile file = gzopen(folder.PathOf("gz").c_str(), "wb9");
    EXPECT_EQ(gzwrite(file, text.data(), static_cast<unsigned>(text.size())), static_cast<int>(text.size()));
    gzclose(file);
    return folder.Read("gz");
}

TEST(CGzipDecoder, InflatesMembersAndStopsAtFaults)
{
    std::string text;
    for (int line = 0; line < 5000; ++line)
        text += std::to_string(line) + " bottles\n";
    const std::string first = Compress(text);
    std::string wrongChecksum = first;
    wrongChecksum[first.size() - 8] ^= 1;
    const auto expect = [](const char* name, const std::string& input, const std::string& expected, bool fails)
    {
        for (const size_t blockSize : {size_t {1}, size_t {1000}, size_t {1} << 20})
        {
            SCOPED_TRACE(testing::Message() << name << ", blocks of " << blockSize);
            const ZVReleasePointer<IZVDecoder> decoder(
                CCompression().CreateGzipDecoder(input.data(), static_cast<int64_t>(input.size())));
            std::string output;
            std::string block(blockSize, '\0');
            while (const int64_t count = decoder->Read(block.data(), static_cast<int64_t>(blockSize)))
                output.append(block, 0, static_cast<size_t>(count));
            EXPECT_EQ(decoder->HasFailed(), fails);
            EXPECT_TRUE(output == expected) << output.size();
        }
    };
    expect("two members", first + std::string(3, '\0') + Compress("the end"), text + "the end", false);
    expect("padding", first + std::string(700, '\0'), text, false);
    expect("junk", first + "this is no gzip", text, false);
    expect("junk after padding", first + std::string(3, '\0') + "\x1f", text, false);
    expect("an empty member", Compress(""), "", false);
    expect("nothing", "", "", true);
    expect("junk alone", "this is no gzip", "", true);
    expect("a cut header", first + first.substr(0, 5), text, true);
    expect("a cut trailer", first.substr(0, first.size() - 1), text, true);
    expect("a wrong checksum", wrongChecksum, text, true);
}
}
