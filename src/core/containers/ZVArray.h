#pragma once

#include "core/containers/ZVCoreArray.h"

// The array of element objects.
template <class T, class TArg = const T&, bool Flag = false>
class ZVArray : public ZVCoreArray<T, TArg, Flag>
{
};
