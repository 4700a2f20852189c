#include "siblings/tools/compression/CCompression.h"

#include "ToolsFolder.h"

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
    const auto expect = [](const std::string& input, const std::string& expected, bool fails)
    {
        for (const size_t blockSize : {size_t {1}, size_t {1000}, size_t {1} << 20})
        {
            IZVDecoder* const decoder = CCompression().CreateGzipDecoder(input.data(), static_cast<int64_t>(input.size()));
            std::string output;
            std::string block(blockSize, '\0');
            while (const int64_t count = decoder->Read(block.data(), static_cast<int64_t>(blockSize)))
                output.append(block, 0, static_cast<size_t>(count));
            EXPECT_EQ(decoder->HasFailed(), fails) << input.size() << " bytes, blocks of " << blockSize;
            EXPECT_EQ(output, fails ? expected.substr(0, output.size()) : expected);
            decoder->Release();
        }
    };
    expect(first + Compress("the end"), text + "the end", false);
    expect(first + std::string(700, '\0'), text, false);
    expect(Compress(""), "", false);
    for (const std::string noMember : {"", "this is no gzip"})
        expect(noMember, "", true);
    // In the header, the data and the trailer.
    for (const size_t size : {size_t {5}, first.size() / 2, first.size() - 1})
        expect(first.substr(0, size), text, true);
    for (const std::string& damaged : {wrongChecksum, first + "x"})
        expect(damaged, text, true);
}
}
