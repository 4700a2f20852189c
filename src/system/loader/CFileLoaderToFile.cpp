#include "system/loader/CFileLoader.h"

#include "core/date/ZVDate.h"
#include "core/date/ZVDateText.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/loader/CFileSink.h"

namespace
{
constexpr wchar_t NotModified[] = L"304";
constexpr wchar_t RangeNotSatisfiable[] = L"416";

// The size of the whole resource in an answer that has no such range: "Content-Range: bytes */1234" (RFC 9110, 14.4). -1 without
// it.
int64_t GetSizeBehindRange(const ZVString& headers)
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
        return LoadResumed(url, path, mode == ZVLoadToFileMode::KeepPartial);
    case ZVLoadToFileMode::IfNewer:
        return LoadIfNewer(url, path);
    case ZVLoadToFileMode::Replace:
        break;
    }
    CFileSink sink(path);
    return LoadWhole(url, sink, false);
}

bool CFileLoader::LoadTemporary(const ZVFilename& url, ZVFilename& target)
{
    CFileSink sink(ZVString(), url.GetNameOnly(), url.GetExtension());
    const bool isLoaded = LoadWhole(url, sink, false);
    target = ZVFilename::FromPath(sink.GetPath());
    return isLoaded;
}

bool CFileLoader::LoadWhole(const ZVFilename& url, CFileSink& sink, bool keepPartial)
{
    return EndFile(RunLoad(url, nullptr, &sink, ZVString(), sink.GetPath(), nullptr, 0.0), sink, keepPartial);
}

bool CFileLoader::LoadResumed(const ZVFilename& url, const ZVString& path, bool keepPartial)
{
    CFileSink sink(path);
    if (sink.GetExistingSize() < 1)
        return LoadWhole(url, sink, keepPartial);

    const ZVStringArray headers = m_options.RequestHeaders;
    const bool hasBody = m_options.PostSize > 0;
    const int64_t startOffset = m_options.StartOffset;
    if (IsInternetName(url))
        SetRequestOption(ZVRequestHeaders::RangeStart, ZVString::FromInt(sink.GetExistingSize()));
    else
        m_options.StartOffset = sink.GetExistingSize();
    bool resume = true;
    const bool isLoaded = LoadToSink(url, nullptr, &sink, path, &resume, 0.0);
    m_options.StartOffset = startOffset;

    const bool isBehindEnd = m_statusCode == RangeNotSatisfiable;
    if (sink.IsComplete() || (isBehindEnd && GetSizeBehindRange(m_allHeaders) == sink.GetExistingSize()))
        return true;
    if ((resume && !isBehindEnd) || hasBody || IsCancelled())
        return EndFile(isLoaded, sink, keepPartial);

    // What the target holds is no beginning of the resource.
    m_options.RequestHeaders = headers;
    CFileSink newSink(path);
    return LoadWhole(url, newSink, keepPartial);
}

bool CFileLoader::LoadIfNewer(const ZVFilename& url, const ZVString& path)
{
    const ZVFileInfo target(path);
    if (!target.IsFound() || target.GetSize() < 1)
    {
        CFileSink sink(path);
        return LoadWhole(url, sink, false);
    }

    const double modified = ZVDate::FromUnix(static_cast<int64_t>(target.GetModificationTime()));
    SetRequestOption(ZVRequestHeaders::IfModifiedSince, ZVDate::ToRFC1123(modified));
    SetRequestOption(ZVRequestHeaders::UseCache, L"1");
    const ZVFilename name = ZVFilename::FromPath(path);
    CFileSink sink(name.GetDirectory(), name.GetNameOnly(), L"download");
    const bool isLoaded = EndFile(RunLoad(url, nullptr, &sink, path, sink.GetPath(), nullptr, modified), sink, false);
    if (m_statusCode == NotModified)
        return true;
    if (isLoaded && ZVFileSystem::MoveFile(sink.GetPath(), path))
        return true;
    if (isLoaded)
        ZVFileSystem::DeleteFile(sink.GetPath());
    return false;
}

bool CFileLoader::EndFile(bool isLoaded, CFileSink& sink, bool keepPartial) const
{
    const bool isWhole = isLoaded && !IsCancelled();
    if (isWhole || keepPartial)
        sink.Keep();
    else
        sink.Discard();
    return isWhole;
}
