#include "system/file/ZVSmallFile.h"

#include "system/file/ZVFile.h"
#include "system/file/ZVFileSystem.h"

namespace
{
constexpr size_t MaximumSize = 1024 * 1024;
constexpr size_t BlockSize = 16 * 1024;
}

std::string ZVSmallFile::Read(const ZVString& path)
{
    std::string bytes;
    ZVFile file;
    if (!ZVFileSystem::Exists(path) || !file.Open(ZVFilename::FromPath(path), ZVFileAccess::Read))
        return bytes;
    // The kernel's files have no length, so they are read to their end.
    char block[BlockSize];
    int64_t read = 0;
    while (bytes.size() < MaximumSize && file.Read(block, sizeof block, read) && read > 0)
        bytes.append(block, static_cast<size_t>(read));
    return bytes;
}

std::string_view ZVSmallFile::TakeUpTo(std::string_view& text, char delimiter)
{
    const size_t position = text.find(delimiter);
    const std::string_view taken = text.substr(0, position);
    text.remove_prefix(position == std::string_view::npos ? text.size() : position + 1);
    return taken;
}
