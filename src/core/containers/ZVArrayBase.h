#pragma once

#include <cstddef>
#include <cstdint>

// The part of an array that does not depend on its elements: their count, the room for them, and the rule by which the room
// grows. The arrays themselves copy and move, since they know what an element is; neither changes the growth step.
class ZVArrayBase
{
public:
    // The growth step for automatic growth: by the table in CapacityFor.
    static constexpr int32_t AutomaticGrowth = -1;

    int32_t GetCount() const { return m_count; }
    bool IsEmpty() const { return m_count == 0; }
    // How many elements fit without a new allocation.
    int32_t GetCapacity() const { return m_capacity; }
    // Makes the capacity grow to a multiple of step that is larger than needed. A step below 1 selects automatic growth.
    void SetGrowBy(int32_t step) { m_growBy = step > 0 ? step : AutomaticGrowth; }

protected:
    ZVArrayBase() = default;
    ~ZVArrayBase() = default;
    ZVArrayBase(const ZVArrayBase&) = delete;
    ZVArrayBase& operator=(const ZVArrayBase&) = delete;

    // The capacity to allocate for count elements: with exact that count, otherwise by the growth step or the table. Throws
    // std::bad_alloc if it does not fit into 32 bits.
    int32_t CapacityFor(int64_t count, bool exact) const;

    // Flags of Reallocate.
    static constexpr uint32_t KeepElements = 1;
    static constexpr uint32_t ZeroFill = 2;

    // A new allocation with room for capacity elements in place of the old one, which is freed; sets the capacity and returns the
    // new one. With KeepElements the present elements move over bytewise. With ZeroFill, and always when there was no old
    // allocation, the room after them is zero. Throws std::bad_alloc and has then changed nothing.
    void* Reallocate(void* elements, size_t elementSize, int32_t capacity, uint32_t flags);

    int32_t m_count = 0;
    int32_t m_capacity = 0;
    int32_t m_growBy = AutomaticGrowth;
};
