#pragma once

#include "core/containers/ZVCoreArray.h"

// An array of objects.
template <class T, class TArg = const T&, bool Flag = false>
class ZVArray : public ZVCoreArray<T, TArg, Flag>
{
};
