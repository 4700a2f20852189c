#pragma once

#include <unistd.h>
#include <utility>

// A file descriptor that is closed with the object.
class CDescriptor
{
public:
    CDescriptor() = default;
    explicit CDescriptor(int descriptor) : m_descriptor(descriptor) {}
    CDescriptor(CDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    CDescriptor& operator=(CDescriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~CDescriptor() { Close(); }

    bool IsOpen() const { return m_descriptor >= 0; }
    int Get() const { return m_descriptor; }
    void Close()
    {
        if (IsOpen())
            close(std::exchange(m_descriptor, -1));
    }

private:
    int m_descriptor = -1;
};
