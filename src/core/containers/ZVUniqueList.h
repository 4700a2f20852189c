#pragma once

#include "core/containers/ZVMap.h"

// A set of numbers or pointers.
template <class T, class TArg = T>
class ZVUniqueList : public ZVMap<T, TArg, int, int, false>
{
public:
    using ZVMap<T, TArg, int, int, false>::ZVMap;

    // Removes a value; false if it was not there.
    bool Remove(TArg value) { return this->RemoveKey(value); }
};
