#pragma once

#include "FakeTools.h"
#include "contracts/IZVReader.h"
#include "contracts/ZVReleasePointer.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVStringUTF8.h"
#include "support/MakeContent.h"
#include "system/library/ZVDllString.h"

#include <gtest/gtest.h>
#include <string>

// The factories of the library, whose objects the tests are linked with.
extern "C" ZVCreateReaderByName CreateGenericReaderDLL, CreateLocalReaderDLL, CreateInternetReaderDLL;
extern "C" ZVCreateReaderOfMemory CreateFromMemoryReaderDLL;

using ReaderPointer = ZVReleasePointer<IZVReader>;

// Reads count bytes, or up to the end.
inline std::string ReadBytes(IZVReader& reader, int64_t count)
{
    std::string bytes(static_cast<size_t>(count), '\0');
    bytes.resize(static_cast<size_t>(reader.Read(bytes.data(), count)));
    return bytes;
}

inline std::string ReadAll(IZVReader& reader)
{
    std::string all;
    for (std::string block; !(block = ReadBytes(reader, 0x10000)).empty();)
        all += block;
    return all;
}

inline std::string GetInfo(IZVReader& reader, const wchar_t* key)
{
    ZVString text = L"left over";
    ZVDllString value(text);
    reader.GetInfo(key, value);
    return ZVStringUTF8(text).Get();
}

// A test with the log lines that it causes.
class ReaderTest : public testing::Test
{
protected:
    ReaderTest() { g_pZVTools = &m_tools; }
    ~ReaderTest() override { g_pZVTools = nullptr; }

    // The log lines, one after the other.
    std::string TakeLog()
    {
        std::string log;
        for (const std::string& line : m_tools.Manager.Lines)
            log += line + "\n";
        m_tools.Manager.Lines.clear();
        return log;
    }

    FakeTools m_tools;
};
