#pragma once

#include "system/library/ZVNativeBytes.h"

// A path in the form in which a system call gets it, whatever form it has: in the style of the file system, so that literals with
// backslashes work, and in bytes.
class ZVNativePath : public ZVNativeBytes
{
public:
    explicit ZVNativePath(const ZVString& path);
};
