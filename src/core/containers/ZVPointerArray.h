#pragma once

#include "core/containers/ZVCoreArray.h"

// An array of pointers to objects that it does not own. New elements are null.
template <class T>
class ZVPointerArray : public ZVCoreArray<T*, T*, false>
{
};
