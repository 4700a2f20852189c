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
    const std::string zeros(700, '\0');
    const auto cut = [&first](size_t size) { return first.substr(0, size); };

    const struct
    {
        const char* Name;
        std::string Input;
        std::string Output;  // or its beginning, when it fails
        bool Fails;
    } cases[] = {
        {"two members",        first + Compress("the end"), text + "the end", false},
        {"padding",            first + zeros,               text,             false},
        {"empty content",      Compress(""),                "",               false},
        {"no input",           "",                          "",               true },
        {"plain text",         "this is no gzip",           "",               true },
        {"cut in the header",  cut(5),                      "",               true },
        {"cut in the data",    cut(first.size() / 2),       text,             true },
        {"cut in the trailer", cut(first.size() - 1),       text,             true },
        {"wrong checksum",     wrongChecksum,               text,             true },
        {"something behind",   first + "x",                 text,             true },
    };
    for (const auto& row : cases)
        for (const size_t blockSize : {size_t {1}, size_t {1000}, size_t {1} << 20})
        {
            IZVDecoder* const decoder =
                CCompression().CreateGzipDecoder(row.Input.data(), static_cast<int64_t>(row.Input.size()));
            std::string output;
            std::string block(blockSize, '\0');
            while (const int64_t count = decoder->Read(block.data(), static_cast<int64_t>(blockSize)))
                output.append(block, 0, static_cast<size_t>(count));
            EXPECT_EQ(decoder->HasFailed(), row.Fails) << row.Name << ", blocks of " << blockSize;
            EXPECT_EQ(output, row.Fails ? row.Output.substr(0, output.size()) : row.Output) << row.Name << " " << blockSize;
            decoder->Release();
        }
}
}
