#include "mp4/model/StopOnBrokenTree.h"

void StopOnBrokenTree()
{
    // A store to nowhere, which no handler of a sensible process lets pass.
    *static_cast<volatile int*>(nullptr) = 0;
    __builtin_trap();
}
