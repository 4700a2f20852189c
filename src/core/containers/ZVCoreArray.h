#pragma once

#include "core/containers/ZVArrayBase.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

// An array of elements in one allocation, passed as TArg: const T& for objects, T for numbers and pointers. Flag only marks a
// kind of array.
//
// Elements are constructed, copied and destroyed one by one, but move from place to place bytewise, so T must not point into
// itself; ZVString and the containers do not. Access by index is not checked. Operations that change the array clamp counts, and
// do nothing at a position out of range. A pointer or reference to an element holds until the array grows or shrinks, but a value
// that an operation is given may be an element of the same array. Failure to allocate throws std::bad_alloc.
template <class T, class TArg, bool Flag>
class ZVCoreArray : public ZVArrayBase
{
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "the storage is aligned for ordinary types only");

public:
    // The order of the virtual functions is fixed.
    virtual ~ZVCoreArray() { Free(); }

    // Assigns an element. With notifyReplace the array is told first that the old value goes.
    virtual void SetElement(int32_t index, TArg value, bool notifyReplace)
    {
        if (!IsInside(index))
            return;
        if (notifyReplace)
            OnElementRemoved(index);
        m_elements[index] = value;
    }

protected:
    // An element is about to leave the array; what it refers to can be released here. The element itself is destroyed afterwards.
    // A class that overrides this calls RemoveAll in its destructor.
    virtual void OnElementRemoved([[maybe_unused]] int32_t index) {}

public:
    ZVCoreArray() = default;
    // A copy of each element, in an allocation of just that size.
    ZVCoreArray(const ZVCoreArray& other) : ZVCoreArray() { CopyFrom(other); }
    ZVCoreArray(ZVCoreArray&& other) noexcept : ZVCoreArray() { TakeFrom(other); }

    ZVCoreArray& operator=(const ZVCoreArray& other)
    {
        if (this != &other)
        {
            RemoveAll(other.m_count > m_capacity);
            CopyFrom(other);
        }
        return *this;
    }

    ZVCoreArray& operator=(ZVCoreArray&& other) noexcept
    {
        if (this != &other)
        {
            RemoveAll();
            TakeFrom(other);
        }
        return *this;
    }

    T& operator[](int32_t index) { return m_elements[index]; }
    const T& operator[](int32_t index) const { return m_elements[index]; }
    // The elements in a row, or null when there is no storage.
    T* GetData() { return m_elements; }
    const T* GetData() const { return m_elements; }
    T* begin() { return m_elements; }
    T* end() { return m_elements + m_count; }
    const T* begin() const { return m_elements; }
    const T* end() const { return m_elements + m_count; }

    // The index of the first element that equals the value, or -1.
    int32_t Find(TArg value) const
    {
        for (int32_t index = 0; index < m_count; ++index)
            if (m_elements[index] == value)
                return index;
        return -1;
    }

    // Appends the value and gives its index.
    int32_t Add(TArg value)
    {
        if (m_count == m_capacity) [[unlikely]]
            return AddGrowing(value);
        new (m_elements + m_count) T(value);
        return m_count++;
    }

    // Inserts the value before an index from 0 to the count.
    void InsertAt(int32_t index, TArg value)
    {
        if (index < 0 || index > m_count)
            return;
        const int32_t last = Add(value);
        std::byte bytes[ElementSize];
        memcpy(bytes, Slot(last), ElementSize);
        memmove(Slot(index + 1), Slot(index), BytesOf(last - index));
        memcpy(Slot(index), bytes, ElementSize);
    }

    // Removes count elements, or as many as there are from index on.
    void RemoveAt(int32_t index, int32_t count = 1)
    {
        if (!IsInside(index) || count < 1)
            return;
        const int32_t behind = count < m_count - index ? index + count : m_count;
        NotifyRemoved(index, behind);
        std::destroy(m_elements + index, m_elements + behind);
        memmove(Slot(index), Slot(behind), BytesOf(m_count - behind));
        const int32_t newCount = m_count - (behind - index);
        memset(Slot(newCount), 0, BytesOf(m_count - newCount));
        m_count = newCount;
    }

    // Removes all elements, and with freeStorage their storage too.
    void RemoveAll(bool freeStorage = true)
    {
        NotifyRemoved(0, m_count);
        if (freeStorage)
            Free();
        else
            DestroyAll();
    }

    // Removes elements from the end, or appends elements of the type's default value: zero, null, the empty string. With exact a
    // new allocation has no room to spare.
    void SetCount(int32_t count, bool exact = false)
    {
        if (count < m_count)
        {
            const int32_t newCount = count > 0 ? count : 0;
            RemoveAt(newCount, m_count - newCount);
            return;
        }
        Reserve(count, exact);
        std::uninitialized_value_construct(m_elements + m_count, m_elements + count);
        m_count = count;
    }

    // Makes room for that many elements in all.
    void Reserve(int32_t count, bool exact = false)
    {
        if (count > m_capacity)
            Grow(count, exact);
    }

protected:
    bool IsInside(int32_t index) const { return index >= 0 && index < m_count; }

private:
    // An element may well be a pointer.
    static constexpr size_t ElementSize = sizeof(T);  // NOLINT(bugprone-sizeof-expression)

    static size_t BytesOf(int32_t count) { return static_cast<size_t>(count) * ElementSize; }
    void* Slot(int32_t index) { return m_elements + index; }

    void Grow(int64_t count, bool exact)
    {
        m_elements = static_cast<T*>(Reallocate(m_elements, ElementSize, CapacityFor(count, exact), true, false));
    }

    [[gnu::noinline]] int32_t AddGrowing(TArg value)
    {
        // The value can stand in the storage that growing frees.
        T copy(value);
        Grow(static_cast<int64_t>(m_count) + 1, false);
        new (m_elements + m_count) T(std::move(copy));
        return m_count++;
    }

    void NotifyRemoved(int32_t index, int32_t behind)
    {
        for (; index < behind; ++index)
            OnElementRemoved(index);
    }

    void DestroyAll()
    {
        std::destroy(m_elements, m_elements + m_count);
        m_count = 0;
    }

    void Free()
    {
        DestroyAll();
        ::operator delete(m_elements);
        m_elements = nullptr;
        m_capacity = 0;
    }

    // Both of these begin with an array that has no elements.
    void CopyFrom(const ZVCoreArray& other)
    {
        Reserve(other.m_count, true);
        std::uninitialized_copy(other.begin(), other.end(), m_elements);
        m_count = other.m_count;
    }

    void TakeFrom(ZVCoreArray& other)
    {
        m_elements = std::exchange(other.m_elements, nullptr);
        m_count = std::exchange(other.m_count, 0);
        m_capacity = std::exchange(other.m_capacity, 0);
    }

    T* m_elements = nullptr;
};
