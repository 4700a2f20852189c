// One operation on files as a program of its own, which the script file-kills beside it starts and kills.

#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace
{
// A text of that many equal characters.
ZVString MakeText(const char* count, const char* character)
{
    const int32_t length = atoi(count);
    ZVString text;
    std::fill_n(text.GetBuffer(length), length, static_cast<wchar_t>(*character));
    text.ReleaseBuffer(length);
    return text;
}
}

int main(int argc, char** argv)
{
    constexpr int32_t UTF8Mode = 2;
    const std::string_view operation = argc > 3 ? argv[1] : "";
    const ZVString path = ZVNativePath::ToText(argc > 3 ? argv[2] : nullptr);
    if (operation == "move")
        return ZVFileSystem::MoveFile(path, ZVNativePath::ToText(argv[3])) ? 0 : 1;
    if (operation == "replace")
        return ZVFileSystem::SafeReplaceFile(path, ZVNativePath::ToText(argv[3]), 1) ? 0 : 1;
    if (operation == "save" && argc > 4)
        return MakeText(argv[3], argv[4]).SaveToFile(path, UTF8Mode) ? 0 : 1;
    fputs("usage: file_operation move FROM TO | replace PATH NEW | save PATH COUNT CHARACTER\n", stderr);
    return 2;
}
