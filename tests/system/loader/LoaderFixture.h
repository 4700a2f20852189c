#pragma once

#include "core/ZVToolsPointer.h"
#include "siblings/tools/ToolsFolder.h"
#include "support/MakeContent.h"
#include "support/ZVTestServer.h"
#include "system/library/ZVSiblingLibraries.h"
#include "system/loader/CFileLoader.h"
#include "system/loader/IZVFileLoaderProgress.h"

// Asks a function whether a load is to stop, and keeps how far it came.
struct Watcher final : IZVFileLoaderProgress
{
    bool Poll() override { return OnPoll(); }
    void Notify(double fraction) override { Fractions.push_back(fraction); }

    std::function<bool()> OnPoll;
    std::vector<double> Fractions;
};

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
            if (const std::string name = entry.path().filename(); name != "Logs" && !name.starts_with("Settings"))
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

    // The bytes as a gzip file.
    std::string Gzip(const std::string& bytes) const
    {
        Put("bytes", bytes);
        EXPECT_EQ(system(("gzip -f '" + m_folder + "bytes'").c_str()), 0);
        return Get("bytes.gz");
    }

    static std::string Bytes(const ZVBuffer& buffer)
    {
        return std::string(reinterpret_cast<const char*>(buffer.GetData()), static_cast<size_t>(buffer.GetUsed()));
    }

private:
    // The data folder of the process. The tools library asks for it once and stays, so all tests share it, and each leaves it
    // with nothing but what that library keeps open.
    static const std::string& GetDataFolder()
    {
        static const ToolsFolder s_folder;
        static const std::string s_path = s_folder.PathOf("");
        setenv("ZV_DATA_DIR", s_path.c_str(), 1);
        return s_path;
    }

protected:
    const std::string& m_folder = GetDataFolder();
    ZVTestServer m_server;
};
