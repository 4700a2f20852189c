#include "system/loader/CFileLoader.h"

#include "core/date/ZVDate.h"
#include "system/file/ZVFile.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/ZVDllString.h"
#include "system/loader/CFileLoaderTransfer.h"
#include "system/loader/ZVGzipContent.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <sys/stat.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"CFileLoader::Load"};

constexpr int64_t LocalBlock = 0x100000;
constexpr int64_t InternetBlock = 0x10000;

constexpr wchar_t NotModified[] = L"304";

// The most bytes that decode into one string, with room for the terminator.
constexpr int64_t LargestText = INT32_MAX - 16;

// What the end of a load means to those outside.
struct Ending
{
    CFileLoaderOutcome Outcome;
    const char* Reason;  // for the log; null when it is logged already, or is no fault
    bool TellsSink;      // the sink waits for bytes that will not come
};

constexpr Ending Endings[] = {
    {CFileLoaderOutcome::Success,       nullptr,                                   false},
    {CFileLoaderOutcome::NotBegun,      nullptr,                                   false},
    {CFileLoaderOutcome::NoMemory,      "there is not enough memory",              false},
    {CFileLoaderOutcome::NoInternet,    "internet access is off",                  true },
    {CFileLoaderOutcome::NoRegularFile, "it is no regular file",                   true },
    {CFileLoaderOutcome::NotOpened,     nullptr,                                   true },
    {CFileLoaderOutcome::NotModified,   nullptr,                                   false},
    {CFileLoaderOutcome::NotResumable,  nullptr,                                   false},
    {CFileLoaderOutcome::NoStart,       "its start could not be reached",          true },
    {CFileLoaderOutcome::TooLarge,      "it is larger than allowed",               true },
    {CFileLoaderOutcome::GrewTooLarge,  "it is larger than allowed",               false},
    {CFileLoaderOutcome::NotMoved,      nullptr,                                   false},
    {CFileLoaderOutcome::NotValid,      "its first bytes are not what was wanted", false},
    {CFileLoaderOutcome::EndedEarly,    "it ended early",                          false},
    {CFileLoaderOutcome::NothingCame,   "nothing came",                            false},
    {CFileLoaderOutcome::NotWritten,    nullptr,                                   false},
    {CFileLoaderOutcome::NotInflated,   nullptr,                                   false},
};

const Ending& FindEnding(CFileLoaderOutcome outcome)
{
    return *std::find_if(std::begin(Endings), std::end(Endings) - 1,
                         [outcome](const Ending& ending) { return ending.Outcome == outcome; });
}

// The name as the readers take it: a local file by its path, and an address with one of two schemes for what has private ones.
ZVString GetPlainName(const ZVFilename& name)
{
    constexpr wchar_t scheme[] = L"file://";
    constexpr wchar_t localHost[] = L"file://localhost/";
    ZVFilename plain = ZVFilename::FromPath(name.GetPathOnly());
    plain.MapProtocolAliases();
    ZVString path = plain.GetPathOnly();
    if (!path.StartsWith(scheme, false))
        return path;
    // The conversion drops the host with its "/", without which the path would be a relative one.
    const bool hasHost = path.StartsWith(localHost, false);
    ZVFilename::ConvertPathStyle(path, ZVPathStyle::FileURL, ZVPathStyle::URLPath);
    return hasHost ? L"/" + path : path;
}

// False also for a name that leads to nothing: opening it tells why.
bool IsOtherThanFile(const ZVString& path)
{
    const uint32_t attributes = ZVFileSystem::GetFileAttributes(path);
    return attributes != ZVFileSystem::NoAttributes && !S_ISREG(attributes);
}
}

bool CFileLoader::IsInternetName(const ZVFilename& name)
{
    return ZVFilename::IsRemote(GetPlainName(name));
}

bool CFileLoader::Load(const ZVFilename& name, ZVBuffer& buffer)
{
    return Run({.Source = name, .Buffer = &buffer});
}

bool CFileLoader::LoadText(const ZVFilename& name, ZVString& out, ZVEncoding encoding, bool dropNulBytes)
{
    ZVBuffer buffer;
    const Text text = {out, encoding, dropNulBytes};
    out.Empty();
    return Run({.Source = name, .Buffer = &buffer, .Decoded = &text});
}

bool CFileLoader::LoadToSink(const ZVFilename& name, const CFileLoaderTarget& target)
{
    return Run({.Source = name,
                .Buffer = target.Buffer,
                .Sink = target.Sink,
                .SinkPath = &target.Path,
                .Resume = target.Resume,
                .KnownPath = &target.Path,
                .IfNewerThan = target.IfNewerThan});
}

bool CFileLoader::Run(Job job)
{
    if (m_busy.exchange(true))
        return false;
    ForgetAnswer();
    if (job.Buffer != nullptr)
        job.Buffer->Empty();
    return End(job, IsCancelled() ? Outcome::NotBegun : RunGuarded(job));
}

CFileLoader::Outcome CFileLoader::RunGuarded(Job& job)
{
    // The loader's own request to stop may have come a moment ago and must not get lost.
    if (m_cancelTarget != &m_ownCancel)
        m_ownCancel.Clear();
    m_cancelTarget->Attach(*this);
    try
    {
        job.Name = GetPlainName(job.Source);
        job.IsInternet = ZVFilename::IsRemote(job.Name);
        const Outcome outcome = RunJob(job);
        if (outcome == Outcome::Success && job.Decoded != nullptr)
            job.Decoded->Out.SetFromBytes(*job.Buffer, job.Decoded->Encoding, job.Decoded->DropNulBytes);
        return outcome;
    }
    catch (const std::exception&)
    {
        return Outcome::NoMemory;
    }
}

// The one end of all loads.
bool CFileLoader::End(const Job& job, Outcome outcome)
{
    const Ending& ending = FindEnding(outcome);
    if (ending.Reason != nullptr)
        Source.Log("Loading '%s' failed: %s", job.Source.GetPathOnly(), ending.Reason);
    if (ending.TellsSink && job.Sink != nullptr)
        job.Sink->OnFailure();
    if (outcome == Outcome::NotModified)
        m_statusCode = NotModified;
    if (outcome != Outcome::Success && job.Buffer != nullptr)
        job.Buffer->Empty();
    if (outcome != Outcome::Success && job.Decoded != nullptr)
        job.Decoded->Out.Empty();

    m_waitMessage.reset();
    m_cancelTarget->Detach(*this);
    {
        const ZVCriticalSectionLock lock(m_readerLock);
        m_reader.reset();
    }
    SetRequest(ZVStringArray(), nullptr, 0, false);
    m_busy = false;
    return outcome == Outcome::Success;
}

CFileLoader::Outcome CFileLoader::RunJob(const Job& job)
{
    if (m_options.ShowProgress && m_options.WaitMessage.Caption.IsEmpty())
        m_options.WaitMessage.Caption = job.IsInternet ? L"Internet resource" : L"Local resource";
    m_waitMessage = CreateWaitMessage();
    if (!job.IsInternet && IsOtherThanFile(job.Name))
        return Outcome::NoRegularFile;
    return m_options.Streaming || job.Sink != nullptr ? RunReaderPath(job) : RunDirectPath(job);
}

CFileLoader::Outcome CFileLoader::RunDirectPath(const Job& job)
{
    ZVFile file;
    if (job.Buffer == nullptr || !file.Open(ZVFilename::FromPath(job.Name), ZVFileAccess::Read, ZVFileShare::Write))
        return Outcome::NotOpened;
    m_resourceSize = file.GetLength();
    const int64_t start = std::clamp<int64_t>(m_options.StartOffset, 0, std::max<int64_t>(m_resourceSize, 0));
    if (start > 0 && file.Seek(start, ZVSeekOrigin::Start) != start)
        return Outcome::NoStart;
    const Limit limit = GetLimit(job);
    const int64_t remaining = m_resourceSize - start;
    if (remaining > limit.Bytes && limit.Fails)
        return Outcome::TooLarge;
    const int64_t budget = std::min(remaining, limit.Bytes);
    job.Buffer->Grow(budget);
    // One call reads it all, except for a file of gigabytes.
    int64_t loaded = 0;
    int64_t count = 0;
    while (loaded < budget && file.Read(job.Buffer->GetData() + loaded, budget - loaded, count) && count > 0)
        loaded += count;
    job.Buffer->SetUsed(loaded);
    return loaded == budget ? Outcome::Success : Outcome::EndedEarly;
}

CFileLoader::Outcome CFileLoader::RunReaderPath(const Job& job)
{
    if (const Outcome outcome = OpenReader(job); outcome != Outcome::Success)
        return outcome;
    if (IsNotModified(job))
        return Outcome::NotModified;
    if (IsHeadRequest(job))
        return Outcome::Success;
    if (const Outcome outcome = GoToStart(job); outcome != Outcome::Success)
        return outcome;
    const Outcome outcome = MoveContent(job);
    // Whoever cancels a load gets what has come until then.
    if (IsCancelled())
        return Outcome::Success;
    return outcome == Outcome::Success ? InflateContent(job) : outcome;
}

CFileLoader::Outcome CFileLoader::OpenReader(const Job& job)
{
    if (job.IsInternet && !m_options.AllowInternet)
        return Outcome::NoInternet;
    {
        const ZVCriticalSectionLock lock(m_readerLock);
        m_reader = ZVReaders::CreateGeneric(job.Name);
        if (m_reader == nullptr)
            return Outcome::NotOpened;
        // Whoever cancelled before there was a reader could not tell it.
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
    return isOpen ? Outcome::Success : Outcome::NotOpened;
}

void CFileLoader::KeepAnswer()
{
    m_location = GetInfo(L"Location");
    m_allHeaders = GetInfo(L"AllHeaders");
    m_statusCode = GetInfo(L"StatusCode");
    m_resourceSize = m_reader->GetSize();
    ZVString encoding = GetInfo(L"ContentEncoding");
    encoding.MakeLower();
    m_isGzip = encoding.Find(L"gzip") >= 0;
}

void CFileLoader::ForgetAnswer()
{
    m_location.Empty();
    m_allHeaders.Empty();
    m_statusCode.Empty();
    m_resourceSize = -1;
    m_isGzip = false;
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
    if (job.KnownPath == nullptr || job.IfNewerThan == 0.0 ||
        !ZVRequestHeaders::FindValue(m_allHeaders, L"Last-Modified", lastModified) || !ZVDate::Parse(lastModified, 0, date))
        return false;
    // Whole seconds, because a date in a header has no fractions.
    return ZVDate::ToUnix(date) <= ZVDate::ToUnix(job.IfNewerThan) && m_resourceSize >= 0 &&
           m_resourceSize == ZVFileSystem::GetFileSize(*job.KnownPath);
}

// The answer to such a request has the headers of a content, and no content.
bool CFileLoader::IsHeadRequest(const Job& job) const
{
    ZVString method;
    return job.IsInternet && ZVRequestHeaders::FindHeader(m_options.RequestHeaders, ZVRequestHeaders::Method, method) &&
           method.IsEqual(L"HEAD", false);
}

// Brings the reader to the first byte that is wanted.
CFileLoader::Outcome CFileLoader::GoToStart(const Job& job)
{
    // When a range was asked for the reader already stands at its start.
    int64_t start = m_reader->GetPosition();
    if (m_options.StartOffset > 0)
        start = m_resourceSize < 0 ? m_options.StartOffset : std::min(m_options.StartOffset, m_resourceSize);
    if (job.Resume != nullptr && *job.Resume)
    {
        // A file that gets inflated in the end holds no bytes of the encoded content that others could follow.
        const bool isInflated = m_isGzip && job.SinkPath != nullptr && !job.SinkPath->IsEmpty();
        *job.Resume = !isInflated && job.Sink != nullptr && job.Sink->CanResume(m_resourceSize, start);
        if (!*job.Resume)
            return Outcome::NotResumable;
    }
    return start == m_reader->GetPosition() || m_reader->Seek(start) == start ? Outcome::Success : Outcome::NoStart;
}

CFileLoader::Limit CFileLoader::GetLimit(const Job& job) const
{
    Limit limit = {m_options.MaximumBytes, m_options.FailIfLarger};
    if (limit.Bytes < 1)
        limit = {job.Buffer != nullptr && !job.IsInternet ? MaximumLocalBytes : INT64_MAX, true};
    if (job.Decoded != nullptr && limit.Bytes > LargestText)
        limit = {LargestText, true};
    return limit;
}

CFileLoader::Outcome CFileLoader::MoveContent(const Job& job)
{
    const bool isSizeKnown = m_resourceSize >= 0;
    const Limit limit = GetLimit(job);
    const int64_t remaining = isSizeKnown ? std::max<int64_t>(m_resourceSize - m_reader->GetPosition(), 0) : limit.Bytes;
    if (remaining > limit.Bytes && limit.Fails)
        return Outcome::TooLarge;
    const int64_t budget = std::min(remaining, limit.Bytes);
    CFileLoaderReport report(m_options, m_waitMessage.get(), job.Name);
    if (isSizeKnown)
    {
        report.SetTotal(budget);
        if (job.Buffer != nullptr)
            job.Buffer->Grow(budget);
    }
    CFileLoaderTransfer transfer(m_options, *m_reader, job.Buffer, job.Sink);
    const int64_t block = isSizeKnown && !job.IsInternet ? LocalBlock : InternetBlock;
    Outcome outcome = Outcome::Success;
    if (!transfer.Run(budget, block, report, *m_cancelTarget))
        outcome = transfer.IsRefused() ? Outcome::NotValid : Outcome::NotMoved;
    else if (!IsCancelled())
        outcome = JudgeContent(job, budget, transfer.GetLoaded());
    const bool isWhole = outcome == Outcome::Success && !IsCancelled();
    const bool isClosed = job.Sink == nullptr || job.Sink->Close(isWhole ? ZVLoadEnd::Whole : ZVLoadEnd::Broken);
    return isWhole && !isClosed ? Outcome::NotWritten : outcome;
}

// Says whether everything that was wanted has come.
CFileLoader::Outcome CFileLoader::JudgeContent(const Job& job, int64_t budget, int64_t loaded)
{
    if (m_resourceSize >= 0)
        return loaded == budget ? Outcome::Success : Outcome::EndedEarly;
    uint8_t next = 0;
    if (loaded == budget && GetLimit(job).Fails && m_reader->Read(&next, 1) > 0)
        return Outcome::GrewTooLarge;
    return loaded > 0 ? Outcome::Success : Outcome::NothingCame;
}

CFileLoader::Outcome CFileLoader::InflateContent(const Job& job) const
{
    if (!m_isGzip)
        return Outcome::Success;
    ZVGzipContent::Limit limit;
    if (m_options.MaximumBytes > 0 && m_options.MaximumBytes < limit.Bytes)
        limit = {m_options.MaximumBytes, m_options.FailIfLarger};
    if (job.Buffer != nullptr && !ZVGzipContent::InflateBuffer(*job.Buffer, limit))
        return Outcome::NotInflated;
    const bool hasFile = job.Sink != nullptr && job.SinkPath != nullptr && !job.SinkPath->IsEmpty();
    return !hasFile || ZVGzipContent::InflateFile(*job.SinkPath, limit) ? Outcome::Success : Outcome::NotInflated;
}

ZVWaitMessagePointer CFileLoader::CreateWaitMessage()
{
    if (!m_options.ShowProgress || g_pZVWaitMessageFactory == nullptr)
        return nullptr;
    return ZVWaitMessagePointer(g_pZVWaitMessageFactory->Create(m_options.WaitMessage, *this));
}

void CFileLoader::Cancel()
{
    m_cancelTarget->Cancel();
}

void CFileLoader::OnWaitMessageCancelled()
{
    Cancel();
}

// A reader that waits for a server looks at no flag.
void CFileLoader::OnCancel()
{
    const ZVCriticalSectionLock lock(m_readerLock);
    if (m_reader != nullptr)
        m_reader->Cancel();
}
