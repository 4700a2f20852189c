#include "siblings/tools/compression/CCompression.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <zlib.h>

namespace
{
// One gzip member, made with zlib's own compressor.
std::string Compress(const std::string& text)
{
    z_stream stream {};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string bytes(text.size() + 1000, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    bytes.resize(stream.total_out);
    deflateEnd(&stream);
    return bytes;
}

// What comes out in blocks of a size; hasFailed tells how it ended.
std::string Inflate(const std::string& input, size_t blockSize, bool& hasFailed)
{
    CCompression compression;
    IZVDecoder* const decoder = compression.CreateGzipDecoder(input.data(), static_cast<int64_t>(input.size()));
    std::string output;
    std::string block(blockSize, '\0');
    while (const int64_t count = decoder->Read(block.data(), static_cast<int64_t>(block.size())))
        output.append(block, 0, static_cast<size_t>(count));
    hasFailed = decoder->HasFailed();
    decoder->Release();
    return output;
}

TEST(CGzipDecoder, InflatesMembersAndStopsAtFaults)
{
    std::string text;
    for (int line = 0; line < 5000; ++line)
        text += std::to_string(line) + " bottles\n";
    const std::string first = Compress(text);
    const std::string second = Compress("the end");
    std::string wrongChecksum = first;
    wrongChecksum[first.size() - 8] ^= 1;

    const struct
    {
        const char* Name;
        std::string Input;
        std::string Output;  // or its beginning, when it fails
        bool HasFailed;
    } cases[] = {
        {"one member", first, text, false},
        {"two members", first + second, text + "the end", false},
        {"padding", first + std::string(700, '\0'), text, false},
        {"empty content", Compress(""), "", false},
        {"no input", "", "", true},
        {"plain text", "this is no gzip", "", true},
        {"cut in the header", first.substr(0, 5), "", true},
        {"cut in the data", first.substr(0, first.size() / 2), text, true},
        {"cut in the trailer", first.substr(0, first.size() - 1), text, true},
        {"wrong checksum", wrongChecksum, text, true},
        {"something behind", first + "x", text, true},
    };
    for (const auto& row : cases)
        for (const size_t blockSize : {size_t {1}, size_t {1000}, size_t {1} << 20})
        {
            SCOPED_TRACE(std::string(row.Name) + ", blocks of " + std::to_string(blockSize));
            bool hasFailed = !row.HasFailed;
            const std::string output = Inflate(row.Input, blockSize, hasFailed);
            EXPECT_EQ(hasFailed, row.HasFailed);
            if (row.HasFailed)
                EXPECT_EQ(output, row.Output.substr(0, output.size()));
            else
                EXPECT_EQ(output, row.Output);
        }
}
}
