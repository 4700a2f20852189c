#include "mp4/model/StopOnBrokenTree.h"

#include "mp4/model/Exception.h"

void StopOnBrokenTree()
{
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
    ThrowException(L"The tree is broken");
#else
    // A store to nowhere, which no handler of a sensible process lets pass.
    *static_cast<volatile int*>(nullptr) = 0;
    __builtin_trap();
#endif
}
