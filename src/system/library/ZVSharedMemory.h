#pragma once

#include "core/string/ZVString.h"
#include "system/library/ZVDescriptor.h"

#include <cstddef>

// A named block of memory that is the same for everyone who opens it under its name. The name is that of a shared memory object
// of the system, without the leading "/". Only blocks that belong to the process's own user are opened. The mapping ends with the
// object, the name does not.
class ZVSharedMemory
{
public:
    ZVSharedMemory() = default;
    ~ZVSharedMemory() { Close(); }
    ZVSharedMemory(const ZVSharedMemory&) = delete;
    ZVSharedMemory& operator=(const ZVSharedMemory&) = delete;

    // Makes a new block of that many bytes, all 0, which only the user can open, and maps it. False with the error EEXIST when
    // the name is taken.
    bool Create(const ZVString& name, size_t size);
    // Maps the block that has the name. False with EPERM for anything but a block of the user's own, and with EINVAL for one that
    // Create would not have made: of another size, or open to others.
    bool Open(const ZVString& name, size_t size);
    // Ends the mapping.
    void Close();
    // Removes the name. Those who have the block mapped keep it.
    static bool Remove(const ZVString& name);

    // Allocates the pages of a range. Without that the first write to a page allocates it, and ends the process when the system
    // has no memory left for shared blocks.
    bool Reserve(size_t offset, size_t size);

    // The block, or null.
    void* GetData() const { return m_data; }
    // The system's error number after the last call that returned false.
    int32_t GetError() const { return m_error; }

private:
    bool Fail(int32_t error);
    bool Map(size_t size);

    ZVDescriptor m_block;
    void* m_data = nullptr;
    size_t m_size = 0;
    int32_t m_error = 0;
};
