#include <gtest/gtest.h>

#include <cstdlib>

namespace
{
TEST(ReaderLibrary, ExportsItsEntryPointsAndNeedsTheCLibraryAlone)
{
#if defined(ZV_IS_SANITIZED)
    GTEST_SKIP() << "a sanitized library exports and needs what the sanitizers want";
#endif
    if (system("command -v nm >/dev/null") != 0)
        GTEST_SKIP() << "nm is not installed";
    // Each prints what is too much.
    EXPECT_NE(system("nm -D --defined-only '" ZV_READER_LIBRARY
                     "' | grep -vE ' (Create(FromMemory|Generic|Internet|Local)ReaderDLL"
                     "|ZVReader(Ini|Unini)tialize)$'"),
              0);
    EXPECT_NE(
        system("readelf -d '" ZV_READER_LIBRARY "' | grep NEEDED | grep -vE '(libc|libm|ld-linux[-_a-z0-9]*)\\.so\\.[0-9]+.$'"),
        0);
}
}
