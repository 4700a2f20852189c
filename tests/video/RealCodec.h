#pragma once

#include "video/codec/CZVAVLibraries.h"

#include <gtest/gtest.h>

// A test with the real codec libraries.
class RealCodec : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!m_codec.Loaded)
            GTEST_SKIP() << "the codec component is not built";
    }

    const CZVAVLibraries m_codec;
};
