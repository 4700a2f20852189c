#include "system/library/ZVDllBuffer.h"

#include <new>

uint8_t* ZVDllBuffer::Grow(int64_t size)
{
    try
    {
        m_buffer->Grow(size);
        return m_buffer->GetData();
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}
