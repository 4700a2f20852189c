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

// The size of the whole resource in an answer that has no such range: "Content-Range: bytes */1234" (RFC 9110, 14.4). -1 without it.
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
    if (mode == ZVLoadToFileMode::Temporary)
        target.SetListedPath(ZVFileSystem::GetUniqueFilename(ZVString(), url.GetNameOnly(), url.GetExtension()));
    const ZVString path = target.GetPathOnly();
    switch (mode)
    {
    case ZVLoadToFileMode::Resume:
    case ZVLoadToFileMode::KeepPartial:
        return LoadResumed(url, path, mode == ZVLoadToFileMode::KeepPartial);
    case ZVLoadToFileMode::IfNewer:
        return LoadIfNewer(url, path);
    case ZVLoadToFileMode::Replace:
    case ZVLoadToFileMode::Temporary:
        break;
    }
    return LoadWhole(url, path, false);
}

bool CFileLoader::LoadWhole(const ZVFilename& url, const ZVString& path, bool keepPartial)
{
    CFileSink sink(path);
    return EndFile(LoadToSink(url, nullptr, &sink, path, nullptr, 0.0), sink, keepPartial);
}

bool CFileLoader::LoadResumed(const ZVFilename& url, const ZVString& path, bool keepPartial)
{
    CFileSink sink(path);
    if (sink.GetExistingSize() < 1)
        return LoadWhole(url, path, keepPartial);

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
    return LoadWhole(url, path, keepPartial);
}

bool CFileLoader::LoadIfNewer(const ZVFilename& url, const ZVString& path)
{
    const ZVFileInfo target(path);
    if (!target.IsFound() || target.GetSize() < 1)
        return LoadWhole(url, path, false);

    const double modified = ZVDate::FromUnix(static_cast<int64_t>(target.GetModificationTime()));
    SetRequestOption(ZVRequestHeaders::IfModifiedSince, ZVDate::ToRFC1123(modified));
    SetRequestOption(ZVRequestHeaders::UseCache, L"1");
    const ZVFilename name(path);
    const ZVString newPath = ZVFileSystem::GetUniqueFilename(name.GetDirectory(), name.GetNameOnly(), L"download");
    CFileSink sink(newPath);
    const bool isLoaded = EndFile(RunLoad(url, nullptr, &sink, path, newPath, nullptr, modified), sink, false);
    if (m_statusCode == NotModified)
        return true;
    if (isLoaded && ZVFileSystem::MoveFile(newPath, path))
        return true;
    if (isLoaded)
        ZVFileSystem::DeleteFile(newPath);
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
