#include "system/loader/CFileLoader.h"

#include "core/date/ZVDate.h"
#include "core/date/ZVDateText.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/loader/CFileReplacement.h"
#include "system/loader/CFileSink.h"

namespace
{
constexpr wchar_t NotModified[] = L"304";
constexpr wchar_t RangeNotSatisfiable[] = L"416";

// The size of the whole resource in the answer to a range that it does not have: "Content-Range: bytes */1234" (RFC 9110, 14.4).
// -1 if it is missing.
int64_t GetSizeFromRange(const ZVString& headers)
{
    ZVString range;
    if (!ZVRequestHeaders::FindValue(headers, L"Content-Range", range) || !range.TrimFrontTo(L'/', false))
        return -1;
    return range.IsNumber() ? range.ToInt64() : -1;
}
}

bool CFileLoader::LoadToFile(const ZVFilename& url, ZVFilename& target, ZVLoadToFileMode mode)
{
    if (m_busy)
        return false;
    const ZVString path = target.GetPathOnly();
    switch (mode)
    {
    case ZVLoadToFileMode::Temporary:
        return LoadTemporary(url, target);
    case ZVLoadToFileMode::Resume:
    case ZVLoadToFileMode::KeepPartial:
        return LoadResumed(url, path, mode);
    case ZVLoadToFileMode::IfNewer:
        return LoadIfNewer(url, path);
    case ZVLoadToFileMode::Replace:
        break;
    }
    CFileSink sink(path);
    return LoadWhole(url, sink, mode);
}

bool CFileLoader::LoadTemporary(const ZVFilename& url, ZVFilename& target)
{
    CFileSink sink(ZVString(), url.GetNameOnly(), url.GetExtension());
    const bool isLoaded = LoadWhole(url, sink, ZVLoadToFileMode::Temporary);
    target = ZVFilename::FromPath(sink.GetPath());
    return isLoaded;
}

bool CFileLoader::LoadWhole(const ZVFilename& url, CFileSink& sink, ZVLoadToFileMode mode)
{
    return Settle(sink, mode, RunToEnd({.Source = url, .Sink = &sink, .SinkPath = &sink.GetPath()}));
}

bool CFileLoader::LoadResumed(const ZVFilename& url, const ZVString& path, ZVLoadToFileMode mode)
{
    CFileSink sink(path);
    if (sink.GetExistingSize() < 1)
        return LoadWhole(url, sink, mode);

    const ZVStringArray headers = m_options.RequestHeaders;
    const bool hasBody = m_options.PostSize > 0;
    const int64_t startOffset = m_options.StartOffset;
    if (IsInternetName(url))
        SetRequestOption(ZVRequestHeaders::RangeStart, ZVString::FromInt(sink.GetExistingSize()));
    else
        m_options.StartOffset = sink.GetExistingSize();
    bool resume = true;
    const ZVLoadEnd end = RunToEnd({.Source = url, .Sink = &sink, .SinkPath = &sink.GetPath(), .Resume = &resume});
    m_options.StartOffset = startOffset;

    const bool isAfterEnd = m_statusCode == RangeNotSatisfiable;
    if (sink.IsComplete() || (isAfterEnd && GetSizeFromRange(m_allHeaders) == sink.GetExistingSize()))
        return true;
    if ((resume && !isAfterEnd) || hasBody || IsCancelled())
        return Settle(sink, mode, end);

    // What the target holds is not the beginning of the resource.
    m_options.RequestHeaders = headers;
    CFileSink newSink(path);
    return LoadWhole(url, newSink, mode);
}

bool CFileLoader::LoadIfNewer(const ZVFilename& url, const ZVString& path)
{
    if (ZVFileSystem::GetFileSize(path) < 1)
    {
        CFileSink sink(path);
        return LoadWhole(url, sink, ZVLoadToFileMode::IfNewer);
    }

    const double modified = ZVDate::FromUnix(static_cast<int64_t>(ZVFileInfo(path).GetModificationTime()));
    SetRequestOption(ZVRequestHeaders::IfModifiedSince, ZVDate::ToRFC1123(modified));
    SetRequestOption(ZVRequestHeaders::UseCache, L"1");
    CFileReplacement replacement(path, L"download");
    CFileSink& sink = replacement.GetSink();
    const ZVLoadEnd end =
        RunToEnd({.Source = url, .Sink = &sink, .SinkPath = &sink.GetPath(), .KnownPath = &path, .IfNewerThan = modified});
    return m_statusCode == NotModified || (end == ZVLoadEnd::Whole && replacement.Commit());
}

ZVLoadEnd CFileLoader::RunToEnd(const Job& job)
{
    return Run(job) && !IsCancelled() ? ZVLoadEnd::Whole : ZVLoadEnd::Broken;
}

bool CFileLoader::Settle(CFileSink& sink, ZVLoadToFileMode mode, ZVLoadEnd end) const
{
    if (end == ZVLoadEnd::Whole)
        sink.Keep();
    else if (m_isGzip)
        sink.Erase();
    else if (mode == ZVLoadToFileMode::KeepPartial)
        sink.Keep();
    else
        sink.Discard();
    return end == ZVLoadEnd::Whole;
}
