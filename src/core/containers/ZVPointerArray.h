#pragma once

#include "core/containers/ZVCoreArray.h"

// The array of pointers to objects that belong to somebody else. New elements are null.
template <class T>
class ZVPointerArray : public ZVCoreArray<T*, T*, false>
{
};
