#pragma once

#include "FakeTools.h"
#include "contracts/IZVDateServices.h"
#include "core/ZVToolsPointer.h"
#include "core/property/ZVPropertyMap.h"
#include "mp4/AtomBytes.h"

#include <cwchar>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <unistd.h>

namespace AtomBytes
{
inline Bytes Data(const Bytes& value, uint32_t dataType = 1)
{
    return Atom("data", Number(dataType, 4) + Zeros(4) + value);
}

inline Bytes Tag(const Bytes& type, const Bytes& value, uint32_t dataType = 1)
{
    return Atom(type, Data(value, dataType));
}

inline Bytes FreeForm(const Bytes& name, const Bytes& value)
{
    return Atom("----", FullAtom("mean", "com.example") + FullAtom("name", name) + Data(value));
}
}

// The one date that the services know, with its number.
constexpr wchar_t TheDate[] = L"2020-05-17T06:00:00Z";
constexpr wchar_t TheDateWithoutZone[] = L"2020-05-17T06:00:00";
constexpr double TheDateNumber = 43968.25;

// Tests that have the services of the tools library, and a home folder of their own for temporary files.
class TagTest : public testing::Test
{
protected:
    TagTest() : Folder(std::filesystem::temp_directory_path() / ("tags" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(Folder);
        setenv("HOME", Folder.c_str(), 1);
        g_pZVTools = &m_tools;
    }
    ~TagTest() override
    {
        g_pZVTools = nullptr;
        std::filesystem::remove_all(Folder);
    }

    // What a map holds, as "key=value".
    using Values = std::set<std::wstring>;

    static Values GetValues(const ZVPropertyMap& map)
    {
        Values values;
        map.ForEach([&values](const ZVString& key, const ZVString& value) { values.insert((key + L"=" + value).GetText()); });
        return values;
    }

    static std::string ReadFile(const std::filesystem::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    size_t CountFiles() const
    {
        size_t count = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(Folder))
            count += entry.is_regular_file();
        return count;
    }

    const std::filesystem::path Folder;

private:
    struct Tools final : FakeTools, IZVDateServices
    {
        IZVDateServices* GetDateServices(int32_t) override { return this; }
        double Parse(const wchar_t* text, int32_t flags) override
        {
            const bool isTheDate = wcscmp(text, TheDate) == 0 || wcscmp(text, TheDateWithoutZone) == 0;
            return flags == 0 && isTheDate ? TheDateNumber : 0.0;
        }
    };

    Tools m_tools;
};
