#pragma once

#include "core/ZVToolsPointer.h"
#include "support/ZVTestServer.h"
#include "system/library/ZVSiblingLibraries.h"
#include "system/loader/CFileLoader.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

// A test with the real libraries, a folder of its own and a server.
class LoaderFixture : public testing::Test
{
protected:
    LoaderFixture() { EXPECT_TRUE(ZVSiblingLibraries::Get().LoadTools()); }
    ~LoaderFixture() override
    {
        ZVSiblingLibraries::Get().UnloadAll();
        g_pZVTools = nullptr;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder))
            if (!IsOfTools(entry))
                std::filesystem::remove_all(entry);
    }

    ZVString TextAt(const std::string& name) const { return ZVString::FromUTF8((m_folder + name).c_str()); }

    // The path of a file that this makes, with its folders.
    ZVString Put(const std::string& name, const std::string& content) const
    {
        std::filesystem::create_directories(std::filesystem::path(m_folder + name).parent_path());
        std::ofstream(m_folder + name, std::ios::binary) << content;
        return TextAt(name);
    }

    // The content of a file in the folder, "(none)" without it.
    std::string Get(const std::string& name) const
    {
        std::ifstream file(m_folder + name, std::ios::binary);
        return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(none)";
    }

    // How many entries the folder has, but for the log's.
    int64_t CountFiles() const
    {
        const std::filesystem::directory_iterator entries(m_folder);
        return std::count_if(begin(entries), end(entries), [](const auto& entry) { return !IsOfTools(entry); });
    }

    static std::string Bytes(const ZVBuffer& buffer)
    {
        return std::string(reinterpret_cast<const char*>(buffer.GetData()), static_cast<size_t>(buffer.GetUsed()));
    }

    // A text in which every place is different from the others.
    static std::string MakeContent(size_t size)
    {
        std::string content;
        for (size_t number = 0; content.size() < size; ++number)
            content += std::to_string(number) + ",";
        content.resize(size);
        return content;
    }

private:
    // The data folder of the process. The tools library asks for it once and stays, so all tests share it, and each leaves it
    // with nothing but what that library keeps open.
    struct DataFolder
    {
        DataFolder()
        {
            Path = std::string(mkdtemp(Path.data())) + "/";
            setenv("ZV_DATA_DIR", Path.c_str(), 1);
        }
        ~DataFolder()
        {
            std::error_code ignored;
            std::filesystem::remove_all(Path, ignored);
        }
        std::string Path = std::filesystem::temp_directory_path() / "zvloader-XXXXXX";
    };
    static const DataFolder& GetDataFolder()
    {
        static const DataFolder s_folder;
        return s_folder;
    }

    static bool IsOfTools(const std::filesystem::directory_entry& entry)
    {
        const std::string name = entry.path().filename();
        return name == "Logs" || name.starts_with("Settings");
    }

protected:
    const std::string& m_folder = GetDataFolder().Path;
    ZVTestServer m_server;
};
