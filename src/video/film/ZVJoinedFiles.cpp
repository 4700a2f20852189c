#include "video/film/ZVJoinedFiles.h"

#include "system/file/ZVFileInfo.h"
#include "system/log/ZVLog.h"

#include <algorithm>
#include <cstdio>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"ZVJoinedFiles::Open"};

// What the libraries read ahead: sixteen sectors of a disc.
constexpr int BufferSize = 32768;
}

std::unique_ptr<ZVJoinedFiles> ZVJoinedFiles::Open(const CZVAVLibraries& codec, const ZVStringArray& paths, ZVFilmBudget& budget)
{
    std::unique_ptr<ZVJoinedFiles> files(new ZVJoinedFiles(codec, budget));
    for (const ZVString& path : paths)
        files->Add(path);
    return files->m_parts.empty() || !files->MakeContext() ? nullptr : std::move(files);
}

void ZVJoinedFiles::Add(const ZVString& path)
{
    // Anything but a plain file would be waited for without an end.
    const ZVFileInfo info(path);
    auto file = std::make_unique<ZVFile>();
    if (!info.IsFound() || !S_ISREG(info.GetMode()) ||
        !file->Open(ZVFilename::FromPath(path), ZVFileAccess::Read, ZVFileShare::Write))
    {
        Source.Log("A part is left out: %s", path);
        return;
    }
    m_parts.push_back({std::move(file), m_size, info.GetSize()});
    m_size += info.GetSize();
}

bool ZVJoinedFiles::MakeContext()
{
    auto* buffer = static_cast<uint8_t*>(m_codec.av_malloc(BufferSize));
    if (buffer != nullptr)
        m_context = m_codec.avio_alloc_context(buffer, BufferSize, 0, this, ReadBytes, nullptr, SeekTo);
    if (m_context == nullptr)
        m_codec.av_freep(&buffer);
    return m_context != nullptr;
}

ZVJoinedFiles::~ZVJoinedFiles()
{
    if (m_context == nullptr)
        return;
    // The libraries may have put a buffer of their own in the place of the first.
    m_codec.av_freep(&m_context->buffer);
    m_codec.av_freep(&m_context);
}

int ZVJoinedFiles::ReadBytes(void* files, uint8_t* bytes, int count)
{
    return static_cast<ZVJoinedFiles*>(files)->Read(bytes, count);
}

// A part that has become shorter since it was opened ends there, and so does the whole.
int ZVJoinedFiles::Read(uint8_t* bytes, int count)
{
    if (!m_budget.Ask())
        return AVERROR_EXIT;
    for (const Part& part : m_parts)
    {
        const int64_t offset = m_position - part.Start;
        if (offset < 0 || offset >= part.Size)
            continue;
        int64_t read = 0;
        if (part.File->Seek(offset, ZVSeekOrigin::Start) != offset ||
            !part.File->Read(bytes, std::min<int64_t>(count, part.Size - offset), read))
            return AVERROR(EIO);
        m_position += read;
        return read > 0 ? static_cast<int>(read) : AVERROR_EOF;
    }
    return AVERROR_EOF;
}

int64_t ZVJoinedFiles::SeekTo(void* files, int64_t offset, int origin)
{
    auto& joined = *static_cast<ZVJoinedFiles*>(files);
    if ((origin & AVSEEK_SIZE) != 0)
        return joined.m_size;
    const int64_t base = (origin & ~AVSEEK_FORCE) == SEEK_CUR   ? joined.m_position
                         : (origin & ~AVSEEK_FORCE) == SEEK_END ? joined.m_size
                                                                : 0;
    if (offset < -base || offset > INT64_MAX - base)
        return AVERROR(EINVAL);
    joined.m_position = base + offset;
    return joined.m_position;
}
