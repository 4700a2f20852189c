#include "video/film/ZVFilmBudget.h"

#include "system/thread/ZVTimer.h"
#include "video/codec/ZVCodecHeaders.h"

#include <algorithm>
#include <iterator>

void ZVFilmBudget::Serve(AVFormatContext& context)
{
    // The libraries close a film's own file without a word.
    std::fill(std::begin(m_files), std::end(m_files), nullptr);
    m_bytesOfClosedFiles = 0;
    m_openFile = context.io_open;
    m_closeFile = context.io_close2;
    context.opaque = this;
    context.io_open = OpenFile;
    context.io_close2 = CloseFile;
    context.interrupt_callback = {AskFor, this};
    Restart();
}

void ZVFilmBudget::Restart()
{
    m_startTime = ZVTimer::GetMicroseconds();
    m_startBytes = GetBytesRead();
    m_isSpent = false;
}

int ZVFilmBudget::AskFor(void* budget)
{
    return static_cast<ZVFilmBudget*>(budget)->Ask() ? 0 : 1;
}

bool ZVFilmBudget::Ask()
{
    m_isSpent = m_isSpent || IsCancelled() || GetBytesRead() - m_startBytes > m_limits.Bytes ||
                ZVTimer::GetMicroseconds() - m_startTime > m_limits.Microseconds;
    return !m_isSpent;
}

int ZVFilmBudget::OpenFile(AVFormatContext* context, AVIOContext** file, const char* name, int flags, AVDictionary** options)
{
    ZVFilmBudget& budget = *static_cast<ZVFilmBudget*>(context->opaque);
    const int result = budget.m_openFile(context, file, name, flags, options);
    if (result >= 0)
        budget.Replace(nullptr, *file);
    return result;
}

int ZVFilmBudget::CloseFile(AVFormatContext* context, AVIOContext* file)
{
    ZVFilmBudget& budget = *static_cast<ZVFilmBudget*>(context->opaque);
    if (file != nullptr)
        budget.Replace(file, nullptr);
    return budget.m_closeFile(context, file);
}

// Puts a file that was opened into a free place, or frees the place of one that is closed.
void ZVFilmBudget::Replace(const AVIOContext* from, const AVIOContext* to)
{
    const auto place = std::find(std::begin(m_files), std::end(m_files), from);
    if (place == std::end(m_files))
        return;
    if (from != nullptr)
        m_bytesOfClosedFiles += from->bytes_read;
    *place = to;
}

int64_t ZVFilmBudget::GetBytesRead() const
{
    int64_t bytes = m_bytesOfClosedFiles;
    for (const AVIOContext* const file : m_files)
        if (file != nullptr)
            bytes += file->bytes_read;
    return bytes;
}
