#pragma once

#include "mp4/model/Exception.h"
#include "mp4/model/StopOnBrokenTree.h"

// Instead of the library's own, so that a broken tree is an input like any other, in the replay too. For one file of a target.
void StopOnBrokenTree()
{
    ThrowException(L"The tree is broken");
}
