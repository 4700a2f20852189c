#include "system/loader/CFileLoader.h"

#include "core/date/ZVDate.h"
#include "system/file/ZVFile.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/ZVDllString.h"
#include "system/loader/CFileLoaderTransfer.h"
#include "system/loader/IZVFileLoaderSink.h"
#include "system/loader/ZVGzipContent.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <exception>
#include <new>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"CFileLoader"};

constexpr int64_t LocalBlock = 0x100000;
constexpr int64_t InternetBlock = 0x10000;

constexpr wchar_t NotModified[] = L"304";

// What a string can hold, with room for the terminator that decoding adds.
constexpr int64_t LargestText = INT32_MAX - 16;

// The name as the rest of the product sees it: a local file by its path, and one of two schemes for what is not.
ZVString GetPlainName(const ZVFilename& name)
{
    ZVFilename plain = ZVFilename::FromPath(name.GetPathOnly());
    plain.MapProtocolAliases();
    ZVString path = plain.GetPathOnly();
    if (path.StartsWith(L"file://", false))
        ZVFilename::ConvertPathStyle(path, ZVPathStyle::FileURL, ZVPathStyle::URLPath);
    return path;
}

// What may be loaded of a resource whose size is known, or -1 when it is larger than allowed.
int64_t GetBudget(const CFileLoaderOptions& options, int64_t remaining)
{
    if (options.MaximumBytes < 1 || options.MaximumBytes >= remaining)
        return remaining;
    return options.FailIfLarger ? -1 : options.MaximumBytes;
}

void LogFailure(const ZVString& name, const char* reason)
{
    Source.Log("Loading '%s' failed: %s", name, reason);
}
}

bool CFileLoader::IsInternetName(const ZVFilename& name)
{
    return ZVFilename::IsRemote(GetPlainName(name));
}

bool CFileLoader::Load(const ZVFilename& name, ZVBuffer& buffer)
{
    return LoadToSink(name, &buffer, nullptr, ZVString(), nullptr, 0.0);
}

bool CFileLoader::LoadText(const ZVFilename& name, ZVString& out, ZVEncoding encoding, bool dropNulBytes)
{
    const int64_t maximumBytes = m_options.MaximumBytes;
    const bool failIfLarger = m_options.FailIfLarger;
    if (maximumBytes < 1 || maximumBytes > LargestText)
        SetLimits(LargestText, true);
    out.Empty();
    ZVBuffer buffer;
    bool isLoaded = Load(name, buffer);
    SetLimits(maximumBytes, failIfLarger);
    try
    {
        out.SetFromBytes(buffer, encoding, dropNulBytes);
    }
    catch (const std::bad_alloc& exception)
    {
        LogFailure(name.GetPathOnly(), exception.what());
        out.Empty();
        isLoaded = false;
    }
    return isLoaded;
}

bool CFileLoader::LoadToSink(const ZVFilename& name, ZVBuffer* buffer, IZVFileLoaderSink* sink, const ZVString& path,
                             bool* resume, double ifNewerThan)
{
    return RunLoad(name, buffer, sink, path, path, resume, ifNewerThan);
}

bool CFileLoader::RunLoad(const ZVFilename& name, ZVBuffer* buffer, IZVFileLoaderSink* sink, const ZVString& path,
                          const ZVString& sinkPath, bool* resume, double ifNewerThan)
{
    if (m_busy.exchange(true))
        return false;
    if (buffer != nullptr)
        buffer->Empty();
    m_location.Empty();
    m_allHeaders.Empty();
    m_statusCode.Empty();
    m_resourceSize = -1;
    const bool isLoaded = !IsCancelled() && RunGuarded(name, buffer, sink, path, sinkPath, resume, ifNewerThan);
    ResetRequest();
    m_busy = false;
    return isLoaded;
}

bool CFileLoader::RunGuarded(const ZVFilename& name, ZVBuffer* buffer, IZVFileLoaderSink* sink, const ZVString& path,
                             const ZVString& sinkPath, bool* resume, double ifNewerThan)
{
    // The loader's own wish to stop may be there since a moment ago and must not get lost.
    if (m_cancelTarget != &m_ownCancel)
        m_ownCancel.Clear();
    m_cancelTarget->Attach(*this);
    bool isLoaded = false;
    try
    {
        const ZVString plainName = GetPlainName(name);
        const bool isInternet = ZVFilename::IsRemote(plainName);
        isLoaded = RunJob({plainName, isInternet, buffer, sink, path, sinkPath, resume, ifNewerThan});
    }
    catch (const std::exception& exception)
    {
        LogFailure(name.GetPathOnly(), exception.what());
    }
    if (!isLoaded && buffer != nullptr)
        buffer->Empty();

    m_waitMessage.reset();
    m_cancelTarget->Detach(*this);
    DropReader();
    return isLoaded;
}

bool CFileLoader::RunJob(const Job& job)
{
    if (m_options.ShowProgress && m_options.ProgressCaption.IsEmpty())
        m_options.ProgressCaption = job.IsInternet ? L"Internet resource" : L"Local resource";
    m_waitMessage = CreateWaitMessage();
    return m_options.Streaming || job.Sink != nullptr ? RunReaderPath(job) : RunDirectPath(job);
}

bool CFileLoader::RunDirectPath(const Job& job)
{
    ZVFile file;
    if (job.Buffer == nullptr || !file.Open(ZVFilename::FromPath(job.Name), ZVFileAccess::Read, ZVFileShare::Write))
        return false;
    const int64_t size = file.GetLength();
    m_resourceSize = size;
    const int64_t start = std::clamp<int64_t>(m_options.StartOffset, 0, std::max<int64_t>(size, 0));
    if (start > 0 && file.Seek(start, ZVSeekOrigin::Start) != start)
        return false;
    const int64_t budget = GetBudget(m_options, size - start);
    if (budget < 0)
    {
        LogFailure(job.Name, "it is larger than allowed");
        return false;
    }
    job.Buffer->Grow(budget);
    // One call reads it all, but for a file of gigabytes.
    int64_t loaded = 0;
    int64_t count = 0;
    while (loaded < budget && file.Read(job.Buffer->GetData() + loaded, budget - loaded, count) && count > 0)
        loaded += count;
    job.Buffer->SetUsed(loaded);
    if (loaded < budget)
        LogFailure(job.Name, "it ended early");
    return loaded == budget;
}

bool CFileLoader::RunReaderPath(const Job& job)
{
    if (!OpenReader(job))
    {
        if (job.Sink != nullptr)
            job.Sink->OnFailure();
        return false;
    }
    if (IsNotModified(job))
    {
        m_statusCode = NotModified;
        return false;
    }
    if (IsHeadRequest(job))
        return true;
    return ReadContent(job) && (IsCancelled() || InflateContent(job));
}

bool CFileLoader::OpenReader(const Job& job)
{
    if (job.IsInternet && !m_options.AllowInternet)
    {
        LogFailure(job.Name, "internet access is off");
        return false;
    }
    {
        const ZVCriticalSectionLock lock(m_readerLock);
        m_reader = ZVReaders::CreateGeneric(job.Name);
        if (m_reader == nullptr)
            return false;
        // Who cancelled before there was a reader could not tell it.
        if (IsCancelled())
            m_reader->Cancel();
    }
    if (job.IsInternet)
    {
        m_reader->SetTimeout(m_options.TimeoutMs);
        m_reader->SetPost(m_options.PostData, m_options.PostSize);
        m_reader->SetHeaders(m_options.RequestHeaders.GetJoined(ZVRequestHeaders::Separator));
    }
    const bool isOpen = m_reader->Open();
    KeepAnswer();
    return isOpen;
}

void CFileLoader::KeepAnswer()
{
    m_location = GetInfo(L"Location");
    m_allHeaders = GetInfo(L"AllHeaders");
    m_statusCode = GetInfo(L"StatusCode");
    m_resourceSize = m_reader->GetSize();
}

ZVString CFileLoader::GetInfo(const wchar_t* key) const
{
    ZVString value;
    ZVDllString view(value);
    m_reader->GetInfo(key, view);
    return value;
}

bool CFileLoader::IsNotModified(const Job& job) const
{
    ZVString lastModified;
    double date = 0.0;
    if (job.IfNewerThan == 0.0 || !ZVRequestHeaders::FindValue(m_allHeaders, L"Last-Modified", lastModified) ||
        !ZVDate::Parse(lastModified, 0, date))
        return false;
    // Whole seconds: a date in a header has no more.
    return ZVDate::ToUnix(date) <= ZVDate::ToUnix(job.IfNewerThan) && m_resourceSize >= 0 &&
           m_resourceSize == ZVFileSystem::GetFileSize(job.KnownPath);
}

// An answer to such a request has the headers of a content and none.
bool CFileLoader::IsHeadRequest(const Job& job) const
{
    ZVString method;
    return job.IsInternet && ZVRequestHeaders::FindHeader(m_options.RequestHeaders, ZVRequestHeaders::Method, method) &&
           method.IsEqual(L"HEAD", false);
}

bool CFileLoader::ReadContent(const Job& job)
{
    const int64_t size = m_resourceSize;
    // Where a range was asked for the reader stands at its start.
    int64_t start = m_reader->GetPosition();
    if (m_options.StartOffset > 0)
        start = size < 0 ? m_options.StartOffset : std::min(m_options.StartOffset, size);
    if (job.Resume != nullptr && *job.Resume && (job.Sink == nullptr || !job.Sink->CanResume(size, start)))
    {
        *job.Resume = false;
        return false;
    }
    if (start != m_reader->GetPosition() && m_reader->Seek(start) != start)
    {
        LogFailure(job.Name, "its start could not be reached");
        if (job.Sink != nullptr)
            job.Sink->OnFailure();
        return false;
    }

    const bool isSizeKnown = size >= 0;
    int64_t budget = m_options.MaximumBytes > 0 ? m_options.MaximumBytes : INT64_MAX;
    if (isSizeKnown)
        budget = GetBudget(m_options, std::max<int64_t>(size - start, 0));
    if (budget < 0)
    {
        LogFailure(job.Name, "it is larger than allowed");
        if (job.Sink != nullptr)
            job.Sink->OnFailure();
        return false;
    }
    if (isSizeKnown && job.Buffer != nullptr)
        job.Buffer->Grow(budget);

    CFileLoaderReport report(m_options, m_waitMessage.get(), job.Name, job.IsInternet);
    if (isSizeKnown)
        report.SetTotal(budget);
    CFileLoaderTransfer transfer(m_options, *m_reader, job.Buffer, job.Sink);
    const bool isMoved =
        transfer.Run(budget, isSizeKnown && !job.IsInternet ? LocalBlock : InternetBlock, report, *m_cancelTarget);
    if (transfer.IsRefused())
        LogFailure(job.Name, "its first bytes are not what was wanted");
    const bool isWhole = isMoved && !IsCancelled() && IsWhole(job, isSizeKnown, budget, transfer.GetLoaded());
    const bool isClosed = job.Sink == nullptr || job.Sink->Close(isWhole);
    return IsCancelled() || (isWhole && isClosed);
}

bool CFileLoader::IsWhole(const Job& job, bool isSizeKnown, int64_t budget, int64_t loaded)
{
    if (isSizeKnown)
    {
        if (loaded < budget)
            LogFailure(job.Name, "it ended early");
        return loaded == budget;
    }
    uint8_t next = 0;
    if (loaded == budget && m_options.FailIfLarger && m_reader->Read(&next, 1) > 0)
    {
        LogFailure(job.Name, "it is larger than allowed");
        return false;
    }
    if (loaded == 0)
        LogFailure(job.Name, "nothing came");
    return loaded > 0;
}

bool CFileLoader::InflateContent(const Job& job) const
{
    const ZVString encoding = GetInfo(L"ContentEncoding");
    ZVString lowered = encoding;
    lowered.MakeLower();
    if (lowered.Find(L"gzip") < 0)
        return true;
    ZVGzipContent::Limit limit;
    if (m_options.MaximumBytes > 0 && m_options.MaximumBytes < limit.Bytes)
        limit = {m_options.MaximumBytes, m_options.FailIfLarger};
    if (job.Buffer != nullptr && !ZVGzipContent::InflateBuffer(*job.Buffer, limit))
        return false;
    return job.Sink == nullptr || job.SinkPath.IsEmpty() || ZVGzipContent::InflateFile(job.SinkPath, limit);
}

ZVWaitMessagePointer CFileLoader::CreateWaitMessage()
{
    if (!m_options.ShowProgress || g_pZVWaitMessageFactory == nullptr)
        return nullptr;
    return ZVWaitMessagePointer(
        g_pZVWaitMessageFactory->Create({m_options.ProgressCaption, m_options.ProgressText, m_options.ProgressDelay,
                                         m_options.ProgressFlag, m_options.ProgressOption},
                                        *this));
}

void CFileLoader::Cancel()
{
    m_cancelTarget->Cancel();
}

void CFileLoader::OnWaitMessageCancelled()
{
    Cancel();
}

// A reader that waits for a server notices no flag.
void CFileLoader::OnCancel()
{
    const ZVCriticalSectionLock lock(m_readerLock);
    if (m_reader != nullptr)
        m_reader->Cancel();
}

void CFileLoader::DropReader()
{
    const ZVCriticalSectionLock lock(m_readerLock);
    m_reader.reset();
}
