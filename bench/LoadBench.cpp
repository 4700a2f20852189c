// Loading a large text file, compared with one plain read of it and the same decoding.

#include "RatioReport.h"
#include "core/containers/ZVBuffer.h"
#include "core/string/ZVString.h"
#include "system/library/ZVDescriptor.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace
{
constexpr int64_t FileSize = 100'000'000;

// A file of lines with some characters beyond ASCII, made by the first benchmark that runs and removed at the end of the program.
class LargeText
{
public:
    static const std::string& Path()
    {
        static const LargeText s_text;
        return s_text.m_path;
    }

    LargeText(const LargeText&) = delete;
    LargeText& operator=(const LargeText&) = delete;

private:
    LargeText()
    {
        m_path = std::filesystem::temp_directory_path() / "zvload-XXXXXX";
        const ZVDescriptor descriptor(mkstemp(m_path.data()));
        std::string line;
        for (int number = 0; line.size() < 1'000'000; ++number)
            line += "Line " + std::to_string(number) +
                    " of a recording: \xC3\xBC"
                    "ber\n";
        line.resize(1'000'000, '\n');
        std::ofstream file(m_path, std::ios::binary);
        for (int64_t size = 0; size < FileSize; size += 1'000'000)
            file << line;
    }

    ~LargeText() { unlink(m_path.c_str()); }

    std::string m_path;
};

void LoadText(benchmark::State& state)
{
    const ZVString path = ZVString::FromUTF8(LargeText::Path().c_str());
    for (auto _ : state)
    {
        ZVString text;
        text.LoadFromFile(path, ZVEncoding::UTF8);
        if (text.IsEmpty())
            state.SkipWithError("the file did not load");
        benchmark::DoNotOptimize(text.GetLength());
    }
}

void ReadAndDecode(benchmark::State& state)
{
    for (auto _ : state)
    {
        const ZVDescriptor descriptor(open(LargeText::Path().c_str(), O_RDONLY));
        ZVBuffer bytes;
        bytes.Grow(FileSize);
        bytes.SetUsed(read(descriptor.Get(), bytes.GetData(), static_cast<size_t>(FileSize)));
        ZVString text;
        text.SetFromBytes(bytes, ZVEncoding::UTF8, false);
        benchmark::DoNotOptimize(text.GetLength());
    }
}

ZV_COMPARE(LoadText100MB, 1.5, LoadText, ReadAndDecode, "read and decode");
}
