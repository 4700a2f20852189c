#pragma once

#include "contracts/IZVCompression.h"

class CCompression final : public IZVCompression
{
public:
    IZVDecoder* CreateGzipDecoder(const void* bytes, int64_t count) override;
};
