#pragma once

#include "core/containers/ZVStringMap.h"

// A set of texts.
template <class String, bool CaseSensitive>
class ZVStringUniqueList : public ZVStringMap<String, CaseSensitive, int, int, false>
{
public:
    using ZVStringMap<String, CaseSensitive, int, int, false>::ZVStringMap;

    // Removes a text; false if it was not there.
    bool Remove(const wchar_t* text) { return this->RemoveKey(text); }
};
