#include "core/containers/ZVArrayBase.h"

#include <cstring>
#include <new>

namespace
{
// The capacities of automatic growth. Small arrays waste little, and large ones reallocate rarely.
constexpr int32_t GrowthSteps[] = {4, 64, 256, 1024, 4096, 16384, 65536};
// Above the table an array gets this much spare room.
constexpr int64_t LargeArrayHeadroom = 65536;

int64_t AutomaticCapacity(int64_t count)
{
    for (const int32_t capacity : GrowthSteps)
        if (count <= capacity)
            return capacity;
    return count + LargeArrayHeadroom;
}
}

int32_t ZVArrayBase::CapacityFor(int64_t count, bool exact) const
{
    int64_t capacity = count;
    if (!exact)
        capacity = m_growBy > 0 ? m_growBy * (count / m_growBy + 1) : AutomaticCapacity(count);
    if (capacity > INT32_MAX)
        throw std::bad_alloc();
    return static_cast<int32_t>(capacity);
}

void* ZVArrayBase::Reallocate(void* elements, size_t elementSize, int32_t capacity, uint32_t flags)
{
    const size_t newBytes = static_cast<size_t>(capacity) * elementSize;
    char* const newElements = static_cast<char*>(::operator new(newBytes));

    const size_t keptBytes = (flags & KeepElements) != 0 ? static_cast<size_t>(m_count) * elementSize : 0;
    if (keptBytes > 0)
        memcpy(newElements, elements, keptBytes);
    if ((flags & ZeroFill) != 0 || elements == nullptr)
        memset(newElements + keptBytes, 0, newBytes - keptBytes);

    ::operator delete(elements);
    m_capacity = capacity;
    return newElements;
}
