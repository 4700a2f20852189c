#pragma once

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"

#include <gmock/gmock.h>

// A test with a log.
class ToolsFixture : public testing::Test
{
protected:
    ToolsFixture() { g_pZVTools = &m_tools; }
    ~ToolsFixture() override { g_pZVTools = nullptr; }

    FakeTools m_tools;
};
