#pragma once

#include "contracts/IZVDllBuffer.h"
#include "core/containers/ZVBuffer.h"

// Lets another library fill a ZVBuffer. It refers to the buffer, which must live longer. No exception leaves it.
class ZVDllBuffer final : public IZVDllBuffer
{
public:
    explicit ZVDllBuffer(ZVBuffer& buffer) : m_buffer(&buffer) {}

    uint8_t* Grow(int64_t size) override;
    uint8_t* GetData() override { return m_buffer->GetData(); }
    int64_t GetUsed() override { return m_buffer->GetUsed(); }
    // The count is limited to what is allocated.
    void SetUsed(int64_t count) override { m_buffer->SetUsed(count); }

private:
    ZVBuffer* m_buffer;
};
