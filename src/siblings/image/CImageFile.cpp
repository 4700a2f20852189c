#include "siblings/image/CImageFile.h"

#include "siblings/image/formats/CImageFormat.h"
#include "system/file/ZVFileError.h"
#include "system/file/ZVWholeFile.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/library/ZVDescriptor.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace
{
constexpr ZVLogSource SaveSource {ZVLogCategory::Image, L"CImageFile::Save"};
constexpr ZVLogSource LoadSource {ZVLogCategory::Image, L"CImageFile::Load"};

// More than the largest picture that is decoded takes in any format but the most wasteful ones.
constexpr int64_t MaximumFileSize = 512 * 1024 * 1024;

// As much of a file as tells its format.
constexpr int64_t StartSize = 64;

class FileBytes
{
public:
    bool Open(const ZVString& path);
    bool Read(const ZVString& path, int64_t size);
    ZVByteSpan GetSpan() const { return {m_bytes.get(), m_count}; }
    int64_t GetSize() const { return m_size; }

private:
    ZVDescriptor m_descriptor;
    std::unique_ptr<uint8_t[]> m_bytes;
    int64_t m_count = 0;
    int64_t m_size = 0;
};

// Opening a pipe waits for its other side unless told not to.
bool FileBytes::Open(const ZVString& path)
{
    m_descriptor = ZVDescriptor(open(ZVNativePath(path), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat status;
    if (!m_descriptor.IsOpen() || fstat(m_descriptor.Get(), &status) != 0)
    {
        ZVLogFileError(LoadSource, "Error %d opening: %s", path);
        return false;
    }
    m_size = status.st_size;
    if (S_ISREG(status.st_mode) && m_size <= MaximumFileSize)
        return true;
    LoadSource.Log("%s is not read: %s", path, S_ISREG(status.st_mode) ? "it is too large" : "it is no plain file");
    return false;
}

// Reads the file from its start. It may have become shorter meanwhile.
bool FileBytes::Read(const ZVString& path, int64_t size)
{
    m_bytes.reset(new uint8_t[static_cast<size_t>(size)]);
    for (m_count = 0; m_count < size;)
    {
        const ssize_t read = pread(m_descriptor.Get(), m_bytes.get() + m_count, static_cast<size_t>(size - m_count), m_count);
        if (read == 0)
            break;
        if (read < 0 && errno != EINTR)
        {
            ZVLogFileError(LoadSource, "Error %d reading: %s", path);
            return false;
        }
        m_count += read > 0 ? read : 0;
    }
    return true;
}

// Reads all of a file that begins like a picture, and the start of any other.
bool ReadPicture(const ZVString& path, FileBytes& file)
{
    if (!file.Open(path) || !file.Read(path, std::min(file.GetSize(), StartSize)))
        return false;
    return CImageFormat::FindByContent(file.GetSpan()) == nullptr || file.Read(path, file.GetSize());
}
}

bool CImageFile::Save(const CPixelView& picture, const wchar_t* path)
{
    const ZVFilename name = ZVFilename::FromPath(path);
    const CImageFormat* const format = CImageFormat::FindByExtension(name.GetExtension());
    if (format == nullptr)
    {
        SaveSource.Log("%s has the extension of no picture format", path);
        return false;
    }
    CByteSink sink;
    std::string message;
    if (!format->Encode(picture, sink, message))
    {
        SaveSource.Log("%s is not written: %s", path, message.c_str());
        return false;
    }
    if (ZVWholeFile::WriteBytes(name.GetFilename(), sink.GetData(), sink.GetSize()))
        return true;
    ZVLogFileError(SaveSource, "Error %d saving: %s", path);
    return false;
}

bool CImageFile::Load(const wchar_t* path, const ZVImageSize& maximumSize, CPixels& pixels)
{
    const ZVString name = path;
    FileBytes file;
    std::string message;
    if (!ReadPicture(name, file))
        return false;
    const bool isRead = DecodeImage(file.GetSpan(), CImageLimits {.FittingSize = maximumSize}, pixels, message);
    if (!message.empty())
        LoadSource.Log(isRead ? "%s is damaged: %s" : "%s is not read: %s", path, message.c_str());
    return isRead;
}
