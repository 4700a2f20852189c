#pragma once

#include <unistd.h>
#include <utility>

// Owns an open file descriptor, from the line that gets it, and closes it at its end. -1 stands for none.
class ZVDescriptor
{
public:
    static constexpr int None = -1;

    ZVDescriptor() = default;
    // Takes what a system call gave, which may be None.
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

    // Closes what is open. False when the system reports that what was written before is lost; errno then tells why. Without
    // an open descriptor nothing happens.
    bool Close() { return m_descriptor == None || close(Detach()) == 0; }

    // Gives the descriptor to the caller, who closes it.
    int Detach() { return std::exchange(m_descriptor, None); }

private:
    int m_descriptor = None;
};
