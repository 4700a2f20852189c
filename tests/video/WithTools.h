#pragma once

#include "core/ZVToolsPointer.h"
#include "siblings/tools/ToolsFolder.h"
#include "system/library/ZVSiblingLibraries.h"

#include <gtest/gtest.h>

// A test with the tools library, and the folder in which the library has its data and its log. The library asks for that once and stays,
// so all tests of a process share it.
class WithTools : public testing::Test
{
protected:
    WithTools() { EXPECT_TRUE(ZVSiblingLibraries::Get().LoadTools()); }
    ~WithTools() override
    {
        ZVSiblingLibraries::Get().UnloadAll();
        g_pZVTools = nullptr;
    }

    ZVString TextAt(const std::string& name) const { return ZVString::FromUTF8(m_folder.PathOf(name).c_str()); }

private:
    static const ToolsFolder& GetFolder()
    {
        static const ToolsFolder s_folder;
        setenv("ZV_DATA_DIR", s_folder.PathOf("data").c_str(), 1);
        setenv("ZV_LOG_FILE", s_folder.PathOf("worker.log").c_str(), 1);
        return s_folder;
    }

protected:
    const ToolsFolder& m_folder = GetFolder();
};
