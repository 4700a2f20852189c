#pragma once

#include <unistd.h>
#include <utility>

// Owns an open file descriptor from the line that gets it, and closes it when it goes. -1 stands for none.
class ZVDescriptor
{
public:
    static constexpr int None = -1;

    ZVDescriptor() = default;
    // Takes what a system call returned, which may be None.
    explicit ZVDescriptor(int descriptor) : m_descriptor(descriptor) {}
    ~ZVDescriptor() { Close(); }

    ZVDescriptor(ZVDescriptor&& other) noexcept : m_descriptor(other.Detach()) {}
    ZVDescriptor& operator=(ZVDescriptor&& other) noexcept
    {
        if (this != &other)
        {
            Close();
            m_descriptor = other.Detach();
        }
        return *this;
    }

    bool IsOpen() const { return m_descriptor != None; }
    int Get() const { return m_descriptor; }

    // Closes the descriptor, if one is open. False when the system reports that something written before is lost; errno then
    // tells why.
    bool Close() { return m_descriptor == None || close(Detach()) == 0; }

    // Hands the descriptor to the caller, who then closes it.
    int Detach() { return std::exchange(m_descriptor, None); }

private:
    int m_descriptor = None;
};
