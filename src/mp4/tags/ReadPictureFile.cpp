#include "mp4/tags/ReadPictureFile.h"

#include "mp4/model/EncodeText.h"
#include "mp4/model/Exception.h"
#include "mp4/tags/CTagDataAtom.h"
#include "system/file/ZVFile.h"
#include "system/file/ZVFileInfo.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace
{
// Covers have some hundred kilobytes. One that is larger is a mistake, and players that read it into memory would fail.
constexpr int64_t MaximumSize = int64_t {64} << 20;

struct PictureFormat
{
    std::string_view Start;
    uint32_t DataType;
};

constexpr PictureFormat PictureFormats[] = {
    {"\xff\xd8\xff",      CTagDataAtom::JPEG},
    {"\x89PNG\r\n\x1a\n", CTagDataAtom::PNG },
    {"BM",                CTagDataAtom::BMP },
};

std::vector<uint8_t> ReadBytes(const ZVString& path)
{
    const ZVFileInfo info(path);
    // Other things, as pipes, may have no end.
    if (info.IsFound() && !S_ISREG(info.GetMode()))
        ThrowException(L"The picture %s is no file", path);
    ZVFile file;
    if (!file.Open(ZVFilename::FromPath(path), ZVFileAccess::Read))
        ThrowException(L"The picture %s cannot be opened: %s", path, ZVString::FromUTF8(strerror(errno)));
    const int64_t size = file.GetLength();
    if (size > MaximumSize)
        ThrowException(L"The picture %s is larger than %I64d bytes", path, MaximumSize);
    std::vector<uint8_t> bytes(static_cast<size_t>(std::max<int64_t>(size, 0)));
    for (int64_t used = 0, part = 0; used < size; used += part)
        if (!file.Read(bytes.data() + used, size - used, part) || part < 1)
            ThrowException(L"The picture %s cannot be read", path);
    return bytes;
}
}

CPictureFile ReadPictureFile(const ZVString& path)
{
    std::vector<uint8_t> bytes = ReadBytes(path);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (const PictureFormat& format : PictureFormats)
        if (text.starts_with(format.Start))
            return {format.DataType, std::move(bytes)};
    ThrowException(L"%s is no picture of JPEG, PNG or BMP", path);
}
