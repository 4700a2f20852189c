#pragma once

#include "core/containers/ZVBuffer.h"
#include "system/filename/ZVFilename.h"
#include "system/loader/CFileLoaderOptions.h"
#include "system/loader/CFileLoaderReport.h"
#include "system/loader/ICancelHelperCallback.h"
#include "system/loader/IZVWaitMessage.h"
#include "system/loader/ZVCancelHelper.h"
#include "system/loader/ZVReaders.h"
#include "system/loader/ZVRequestHeaders.h"
#include "system/thread/ZVCriticalSection.h"

#include <atomic>
#include <cstdint>

class CFileSink;
class IZVFileLoaderSink;
class ZVMultipartForm;

// The ways of LoadToFile.
enum class ZVLoadToFileMode : int32_t
{
    Replace = 0,
    Temporary = 1,    // into a new file in the folder for temporary files
    Resume = 2,       // goes on behind what the target holds
    IfNewer = 3,      // only when the resource is newer than the target
    KeepPartial = 4,  // as Resume, and what came before a failure stays for the next time
};

// Reads a whole resource, a local file or what an internet address gives, into memory or through a sink. Made on the stack for
// one load or several, one behind the other; each of them starts without the request of the one before. Belongs to one thread,
// but for Cancel.
//
// A failure is a false result and an empty buffer, with a line in the log; no exception comes out. A resource of a known size
// that ends before that size is a failure, and so is one of an unknown size that has no byte.
class CFileLoader : public IZVWaitMessageCallback, private ICancelHelperCallback
{
public:
    CFileLoader() = default;
    // No load may be running.
    ~CFileLoader() override = default;
    CFileLoader(const CFileLoader&) = delete;
    CFileLoader& operator=(const CFileLoader&) = delete;

    void OnWaitMessageCancelled() override;

    // --- Options: all true -----------------------------------------------------------------------------------------------------

    bool SetLimits(int64_t maximumBytes, bool failIfLarger);
    bool SetStartOffset(int64_t offset);
    // The validator is called once, on the first bytes; a marker is looked for in them behind that.
    bool SetValidation(int32_t bytes, ZVLoadValidator* validator, int32_t context, bool validateAtEnd,
                       const ZVString& marker = {});
    // The wait message, with what the options of a load say of it.
    bool SetProgress(bool show, int32_t delayMs, bool flag, const ZVString& caption, bool option, const ZVString& text);
    bool SetProgressCallback(IZVFileLoaderProgress* callback);
    // Without streaming a load into a buffer reads a local file in one go, with neither validation nor reports of its progress.
    bool SetStreaming(bool streaming);
    bool SetAllowInternet(bool allow);
    bool SetTimeout(int32_t milliseconds);
    // Who cancels the loads; null is the loader itself, with its flag cleared.
    bool SetCancelTarget(ZVCancelHelper* target);
    const CFileLoaderOptions& GetOptions() const { return m_options; }

    // --- Request: of the next load -------------------------------------------------------------------------------------------

    // Replaces the headers and the body. A body without a content type is XML, sent with POST. Without copyPost the body stays
    // with the caller and must live until the load ends. A body that is not there or has no size is none.
    void SetRequest(const ZVStringArray& headers, const void* postData, int64_t postSize, bool copyPost);
    // Asks for gzip content when the list does not say what is accepted.
    static void AddDefaultHeaders(ZVStringArray& headers, bool addGzip);
    // Adds or replaces an option or header; the names are in ZVRequestHeaders. False for a value that would become more than one
    // line.
    bool SetRequestOption(const wchar_t* key, const ZVString& value);
    // A body of a kind; contentType is that of a general body.
    void SetBody(ZVRequestMethod method, ZVRequestBodyKind kind, const void* data, int64_t size, bool copy,
                 const ZVString& contentType = ZVString());
    // A finished form, which must live until the load ends. With succeedOnError the answer counts whatever the server says of it.
    void SetForm(ZVRequestMethod method, const ZVMultipartForm& form, bool succeedOnError);

    // --- Load ------------------------------------------------------------------------------------------------------------------

    bool Load(const ZVFilename& name, ZVBuffer& buffer);
    // Decodes the bytes as ZVString::SetFromBytes does; the text is empty after a failure. More bytes than a string can hold
    // fail.
    bool LoadText(const ZVFilename& name, ZVString& out, ZVEncoding encoding, bool dropNulBytes);
    // The general form. Either of buffer and sink may be null, and path, the file behind the sink, empty.
    //
    // With resume set the sink is asked whether the bytes can go behind those it has; if not, resume is cleared and the load
    // fails. A resource that is not newer than the date ifNewerThan, unless this is 0.0, and as large as the file at path is not
    // loaded: the load fails with the status "304". A cancelled load gives whether the resource opened, and IsCancelled is true;
    // one that was cancelled before it began is false.
    bool LoadToSink(const ZVFilename& name, ZVBuffer* buffer, IZVFileLoaderSink* sink, const ZVString& path, bool* resume,
                    double ifNewerThan);
    // Loads into a file. In the mode Temporary target receives the new file's name. With IfNewer an unchanged resource is a
    // success, and the old file stays until the new one is whole. A failed or cancelled load deletes the file that it made, but
    // for KeepPartial.
    bool LoadToFile(const ZVFilename& url, ZVFilename& target, ZVLoadToFileMode mode);

    // Stops the running load, and every later one before it begins. From any thread.
    void Cancel();
    bool IsCancelled() const { return m_cancelTarget->IsCancelled(); }

    // --- What the last load met ------------------------------------------------------------------------------------------------

    // Where a redirect led to, the header lines of the answer, and its status; empty for a local file. They stay when a load
    // failed.
    const ZVString& GetLocation() const { return m_location; }
    const ZVString& GetAllHeaders() const { return m_allHeaders; }
    const ZVString& GetStatusCode() const { return m_statusCode; }
    // The size of the whole resource in bytes, -1 when it was not known.
    int64_t GetResourceSize() const { return m_resourceSize; }

private:
    // One load.
    struct Job
    {
        ZVString Name;
        bool IsInternet;
        ZVBuffer* Buffer;
        IZVFileLoaderSink* Sink;
        const ZVString& KnownPath;  // the file that the resource may be no newer than
        const ZVString& SinkPath;   // the file behind the sink, which may change until the sink is closed
        bool* Resume;
        double IfNewerThan;
    };

    void OnCancel() override;

    static bool IsInternetName(const ZVFilename& name);
    bool RunGuarded(const ZVFilename& name, ZVBuffer* buffer, IZVFileLoaderSink* sink, const ZVString& path,
                    const ZVString& sinkPath, bool* resume, double ifNewerThan);
    bool RunJob(const Job& job);
    bool RunDirectPath(const Job& job);
    bool RunReaderPath(const Job& job);
    bool OpenReader(const Job& job);
    void KeepAnswer();
    bool IsNotModified(const Job& job) const;
    bool IsHeadRequest(const Job& job) const;
    bool ReadContent(const Job& job);
    bool IsWhole(const Job& job, bool isSizeKnown, int64_t budget, int64_t loaded);
    ZVWaitMessagePointer CreateWaitMessage();
    bool InflateContent(const Job& job) const;
    void DropReader();
    void ResetRequest();
    bool RunLoad(const ZVFilename& name, ZVBuffer* buffer, IZVFileLoaderSink* sink, const ZVString& path,
                 const ZVString& sinkPath, bool* resume, double ifNewerThan);
    bool LoadTemporary(const ZVFilename& url, ZVFilename& target);
    bool LoadWhole(const ZVFilename& url, CFileSink& sink, bool keepPartial);
    bool LoadResumed(const ZVFilename& url, const ZVString& path, bool keepPartial);
    bool LoadIfNewer(const ZVFilename& url, const ZVString& path);
    bool EndFile(bool isLoaded, CFileSink& sink, bool keepPartial) const;
    ZVString GetInfo(const wchar_t* key) const;

    ZVCancelHelper m_ownCancel;
    ZVCancelHelper* m_cancelTarget = &m_ownCancel;
    CFileLoaderOptions m_options;
    ZVBuffer m_ownedPost;
    ZVString m_location;
    ZVString m_allHeaders;
    ZVString m_statusCode;
    int64_t m_resourceSize = -1;
    ZVWaitMessagePointer m_waitMessage;
    // Guards the reader, which Cancel reaches from other threads.
    ZVCriticalSection m_readerLock;
    ZVReaderPointer m_reader;
    std::atomic<bool> m_busy = false;
};
