#pragma once

#include "core/string/ZVString.h"

#include <cstddef>

// A named block of memory that all who open it under its name see alike. The name is one of the system's shared memory objects,
// without the leading "/", and belongs to the user: only blocks of the process's own user are opened. The mapping ends with the
// object, the name does not.
class ZVSharedMemory
{
public:
    ZVSharedMemory() = default;
    ~ZVSharedMemory() { Close(); }
    ZVSharedMemory(const ZVSharedMemory&) = delete;
    ZVSharedMemory& operator=(const ZVSharedMemory&) = delete;

    // Makes a new block of size bytes, all 0, that nobody but the user can open, and maps it. False with the error EEXIST when
    // the name is taken.
    bool Create(const ZVString& name, size_t size);
    // Maps the block that has the name. False with EPERM for what is not the user's own block, and with EINVAL for a block of the
    // user that Create would not have made: of another size, or open to others.
    bool Open(const ZVString& name, size_t size);
    // Ends the mapping.
    void Close();
    // Takes the name away. Who has the block mapped keeps it.
    static bool Remove(const ZVString& name);

    // Allocates the pages of a range. A page that was not reserved is allocated by its first write, and that write ends the
    // process when the system has no memory for shared blocks left.
    bool Reserve(size_t offset, size_t size);

    // The block, or null.
    void* GetData() const { return m_data; }
    // The system's error number of the last call that gave false.
    int32_t GetError() const { return m_error; }

private:
    bool Fail(int32_t error);
    bool Map(size_t size);

    int m_descriptor = -1;
    void* m_data = nullptr;
    size_t m_size = 0;
    int32_t m_error = 0;
};
