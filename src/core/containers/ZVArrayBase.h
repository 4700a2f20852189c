#pragma once

#include <cstddef>
#include <cstdint>

// What an array is without its elements: their count, the room for them, and the rule by which the room grows. Copying and moving
// belong to the arrays, which know what an element is; neither touches the growth step.
class ZVArrayBase
{
public:
    // Selects the automatic growth of the table in CapacityFor.
    static constexpr int32_t AutomaticGrowth = -1;

    int32_t GetCount() const { return m_count; }
    bool IsEmpty() const { return m_count == 0; }
    // Elements that fit without a new allocation.
    int32_t GetCapacity() const { return m_capacity; }
    // Lets the capacity grow to a multiple of step that is larger than what is asked for. A step below 1 selects the automatic
    // growth.
    void SetGrowBy(int32_t step) { m_growBy = step > 0 ? step : AutomaticGrowth; }

protected:
    ZVArrayBase() = default;
    ~ZVArrayBase() = default;
    ZVArrayBase(const ZVArrayBase&) = delete;
    ZVArrayBase& operator=(const ZVArrayBase&) = delete;

    // The capacity to allocate for count elements: with exact that count, otherwise as the growth step or the table tells. Throws
    // std::bad_alloc for more than 32 bits can count.
    int32_t CapacityFor(int64_t count, bool exact) const;

    // A new allocation of capacity elements in place of the old one, which is freed; gives the new one and sets the capacity.
    // With keep the present elements move over bytewise. With zeroFill, and always when there was no old allocation, the room
    // behind them is zero. Throws std::bad_alloc and has then changed nothing.
    void* Reallocate(void* elements, size_t elementSize, int32_t capacity, bool keep, bool zeroFill);

    int32_t m_count = 0;
    int32_t m_capacity = 0;
    int32_t m_growBy = AutomaticGrowth;
};
