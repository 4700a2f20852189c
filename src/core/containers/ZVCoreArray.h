#pragma once

#include "core/containers/ZVArrayBase.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

// An array of elements in one allocation. Elements are passed as TArg: const T& for objects, T for numbers and pointers. Flag
// only marks a kind of array.
//
// Elements are constructed, copied and destroyed one by one, but moved bytewise, so T must not contain pointers to itself;
// ZVString and the containers do not. Access by index is not checked. Operations that change the array limit counts to what there
// is, and do nothing at a position out of range. A pointer or reference to an element is valid until the array grows or shrinks.
// A value that is passed to an operation may be an element of the same array. A failed allocation throws std::bad_alloc.
template <class T, class TArg, bool Flag>
class ZVCoreArray : public ZVArrayBase
{
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "the storage is aligned for ordinary types only");

public:
    // The order of the virtual functions is fixed.
    virtual ~ZVCoreArray() { Free(); }

    // Assigns an element. With notifyReplace OnElementRemoved is called for the old value first.
    virtual void SetElement(int32_t index, TArg value, bool notifyReplace)
    {
        if (!IsInside(index))
            return;
        if (notifyReplace)
            OnElementRemoved(index);
        m_elements[index] = value;
    }

protected:
    // Called before an element leaves the array; releases what it refers to. The element itself is destroyed afterwards. A class
    // that overrides this must call RemoveAll in its destructor.
    virtual void OnElementRemoved([[maybe_unused]] int32_t index) {}

public:
    ZVCoreArray() = default;
    // Copies each element, into an allocation of just that size.
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
    // The first element, which the others follow, or null if there is no storage.
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

    // Appends the value and returns its index.
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

    // Removes count elements from index on, or fewer if there are no more.
    void RemoveAt(int32_t index, int32_t count = 1)
    {
        if (!IsInside(index) || count < 1)
            return;
        const int32_t end = count < m_count - index ? index + count : m_count;
        NotifyRemoved(index, end);
        std::destroy(m_elements + index, m_elements + end);
        memmove(Slot(index), Slot(end), BytesOf(m_count - end));
        const int32_t newCount = m_count - (end - index);
        memset(Slot(newCount), 0, BytesOf(m_count - newCount));
        m_count = newCount;
    }

    // Removes all elements; with freeStorage the storage is freed too.
    void RemoveAll(bool freeStorage = true)
    {
        NotifyRemoved(0, m_count);
        if (freeStorage)
            Free();
        else
            DestroyAll();
    }

    // Removes elements at the end, or appends elements with the default value: zero, null, the empty string. With exact a new
    // allocation has no spare room.
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

    // Makes room for count elements in total.
    void Reserve(int32_t count, bool exact = false)
    {
        if (count > m_capacity)
            Grow(count, exact);
    }

protected:
    bool IsInside(int32_t index) const { return index >= 0 && index < m_count; }

private:
    // The elements may be pointers.
    static constexpr size_t ElementSize = sizeof(T);  // NOLINT(bugprone-sizeof-expression)

    static size_t BytesOf(int32_t count) { return static_cast<size_t>(count) * ElementSize; }
    void* Slot(int32_t index) { return m_elements + index; }

    void Grow(int64_t count, bool exact)
    {
        m_elements = static_cast<T*>(Reallocate(m_elements, ElementSize, CapacityFor(count, exact), KeepElements));
    }

    [[gnu::noinline]] int32_t AddGrowing(TArg value)
    {
        // The value may lie in the storage that Grow frees.
        T copy(value);
        Grow(static_cast<int64_t>(m_count) + 1, false);
        new (m_elements + m_count) T(std::move(copy));
        return m_count++;
    }

    void NotifyRemoved(int32_t index, int32_t end)
    {
        for (; index < end; ++index)
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

    // For both of these this array must be empty.
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
