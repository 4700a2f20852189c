#pragma once

#include "core/containers/ZVCoreArray.h"

#include <utility>

// An array of pointers to objects. While it owns them it deletes each object that is removed or replaced. If Add or InsertAt
// throws, or the position is out of range, the object still belongs to the caller. T must be a complete type where the array is
// made.
template <class T, bool Flag = false>
class ZVOwnedPtrArray : public ZVCoreArray<T*, T*, Flag>
{
    using Base = ZVCoreArray<T*, T*, Flag>;

public:
    explicit ZVOwnedPtrArray(bool owns = true) : m_owns(owns) {}
    ~ZVOwnedPtrArray() override { this->RemoveAll(); }
    // Two arrays cannot own the same objects.
    ZVOwnedPtrArray(const ZVOwnedPtrArray&) = delete;
    ZVOwnedPtrArray& operator=(const ZVOwnedPtrArray&) = delete;
    // Moves the objects and their ownership.
    ZVOwnedPtrArray(ZVOwnedPtrArray&& other) noexcept : Base(static_cast<Base&&>(other)), m_owns(other.m_owns) {}

    ZVOwnedPtrArray& operator=(ZVOwnedPtrArray&& other) noexcept
    {
        Base::operator=(static_cast<Base&&>(other));
        m_owns = other.m_owns;
        return *this;
    }

    // An object that is replaced by itself is not deleted.
    void SetElement(int32_t index, T* value, bool notifyReplace) override
    {
        Base::SetElement(index, value, notifyReplace && this->IsInside(index) && (*this)[index] != value);
    }

    bool GetOwns() const { return m_owns; }
    void SetOwns(bool owns) { m_owns = owns; }

    // Removes an element and returns its object, which then belongs to the caller; null for an index out of range.
    T* DetachAt(int32_t index)
    {
        if (!this->IsInside(index))
            return nullptr;
        T* const object = std::exchange((*this)[index], nullptr);
        this->RemoveAt(index);
        return object;
    }

protected:
    void OnElementRemoved(int32_t index) override
    {
        if (m_owns && this->IsInside(index))
            delete (*this)[index];
    }

private:
    bool m_owns;
};
