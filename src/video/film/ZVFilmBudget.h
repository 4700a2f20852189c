#pragma once

#include <atomic>
#include <cstdint>

struct AVDictionary;
struct AVFormatContext;
struct AVIOContext;

// Bounds what one place of a film may cost before a frame comes out of it. Containers are read by what they say of themselves, so
// a damaged one, or a list of segments that is never complete, can keep its reader busy for as long as there is something to read.
//
// The codec libraries ask the budget while they read and wait; once it is spent they give up. It counts the bytes of all files
// that they open for the film. It belongs to one thread.
class ZVFilmBudget
{
public:
    // From a sound film the first frame comes after some milliseconds and megabytes. A slow disc takes seconds, and the largest
    // uncompressed pictures have some hundred megabytes.
    static constexpr int64_t MaximumMicroseconds = 30'000'000;
    static constexpr int64_t MaximumBytes = int64_t {512} << 20;

    struct Limits
    {
        int64_t Microseconds = MaximumMicroseconds;
        int64_t Bytes = MaximumBytes;
    };

    explicit ZVFilmBudget(const Limits& limits) : m_limits(limits) {}
    ZVFilmBudget(const ZVFilmBudget&) = delete;
    ZVFilmBudget& operator=(const ZVFilmBudget&) = delete;

    // Has a context ask this budget, which outlives it. The context is not open yet, and one that was served before is closed.
    void Serve(AVFormatContext& context);

    // Counts what is read through a file that the libraries did not open.
    void Count(const AVIOContext& file) { Replace(nullptr, &file); }

    // Has all looks find nothing left once the flag is set, which another thread may do. The flag outlives the budget.
    void ObeyCancel(const std::atomic<bool>& isCancelled) { m_isCancelled = &isCancelled; }

    // Begins anew, for another place of the film or after a frame has come.
    void Restart();

    // Looks at what is left; false from then on when that is nothing.
    bool Ask();
    // What the last look found.
    bool IsSpent() const { return m_isSpent; }
    bool IsCancelled() const { return m_isCancelled != nullptr && *m_isCancelled; }

private:
    // No container has as many files open at a time. What is opened beyond them costs time alone.
    static constexpr int MaximumFiles = 16;

    static int AskFor(void* budget);
    static int OpenFile(AVFormatContext* context, AVIOContext** file, const char* name, int flags, AVDictionary** options);
    static int CloseFile(AVFormatContext* context, AVIOContext* file);

    void Replace(const AVIOContext* from, const AVIOContext* to);
    int64_t GetBytesRead() const;

    Limits m_limits;
    int (*m_openFile)(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) = nullptr;
    int (*m_closeFile)(AVFormatContext*, AVIOContext*) = nullptr;
    const AVIOContext* m_files[MaximumFiles] = {};
    int64_t m_bytesOfClosedFiles = 0;
    int64_t m_startBytes = 0;
    int64_t m_startTime = 0;
    bool m_isSpent = false;
    const std::atomic<bool>* m_isCancelled = nullptr;
};
