#pragma once

#include "core/containers/ZVCoreArray.h"
#include "core/string/ZVString.h"

// An array of paths, each as the text that a ZVFilename is made from.
class ZVFilenameArray : public ZVCoreArray<ZVString, const ZVString&, false>
{
public:
    ZVFilenameArray() = default;
    ~ZVFilenameArray() override { RemoveAll(); }
    ZVFilenameArray(const ZVFilenameArray&) = default;
    ZVFilenameArray(ZVFilenameArray&&) noexcept = default;
    ZVFilenameArray& operator=(const ZVFilenameArray&) = default;
    ZVFilenameArray& operator=(ZVFilenameArray&&) noexcept = default;
};
