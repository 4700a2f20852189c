#pragma once

#include "core/containers/ZVBuffer.h"
#include "system/filename/ZVFilename.h"
#include "system/loader/CFileLoaderOptions.h"
#include "system/loader/CFileLoaderOutcome.h"
#include "system/loader/CFileLoaderReport.h"
#include "system/loader/ICancelHelperCallback.h"
#include "system/loader/IZVFileLoaderSink.h"
#include "system/loader/IZVWaitMessage.h"
#include "system/loader/ZVCancelHelper.h"
#include "system/loader/ZVReaders.h"
#include "system/loader/ZVRequestHeaders.h"
#include "system/thread/ZVCriticalSection.h"

#include <atomic>
#include <cstdint>

class CFileSink;
class ZVMultipartForm;

// The ways of LoadToFile.
enum class ZVLoadToFileMode : int32_t
{
    Replace = 0,
    Temporary = 1,    // into a new file in the folder for temporary files
    Resume = 2,       // continues after what the target holds
    IfNewer = 3,      // only when the resource is newer than the target
    KeepPartial = 4,  // like Resume, and what came before a failure stays for the next time
};

// What LoadToSink loads into.
struct CFileLoaderTarget
{
    ZVBuffer* Buffer = nullptr;         // or null
    IZVFileLoaderSink* Sink = nullptr;  // or null
    ZVString Path {};                   // the file that the sink writes, or empty
    // Null for a load from the start. With the flag set the sink is asked whether the bytes can follow those it has; if not, the
    // flag is cleared and the load fails.
    bool* Resume = nullptr;
    // 0.0, or a date: a resource that is not newer and as large as the file at Path is not loaded, and the load fails with the
    // status "304".
    double IfNewerThan = 0.0;
};

// Reads a whole resource, a local file or what an internet address gives, into memory or through a sink. Made on the stack for
// one load, or for several in a row, of which each starts without the request of the one before. Belongs to one thread, except
// Cancel.
//
// A failure is a false result and an empty buffer, with a line in the log; no exception comes out. A resource of a known size
// that ends before that size is a failure, and so is one of an unknown size that has no byte. Of local names only regular files
// are read.
class CFileLoader : public IZVWaitMessageCallback, private ICancelHelperCallback
{
public:
    // The largest local file that is loaded into memory without a MaximumBytes: what is larger is no text and no archive of ours.
    static constexpr int64_t MaximumLocalBytes = int64_t {1} << 30;

    CFileLoader() = default;
    // No load may be running.
    ~CFileLoader() override = default;
    CFileLoader(const CFileLoader&) = delete;
    CFileLoader& operator=(const CFileLoader&) = delete;

    void OnWaitMessageCancelled() override;

    // --- Options: every setter returns true ------------------------------------------------------------------------------------

    bool SetLimits(int64_t maximumBytes, bool failIfLarger);
    bool SetStartOffset(int64_t offset);
    bool SetValidation(const CFileLoaderValidation& validation);
    bool SetProgress(bool show, const ZVWaitMessageOptions& message);
    bool SetProgressCallback(IZVFileLoaderProgress* callback);
    // Without streaming, a load into a buffer reads a local file in one go, without validation and without progress reports.
    bool SetStreaming(bool streaming);
    bool SetAllowInternet(bool allow);
    bool SetTimeout(int32_t milliseconds);
    // Who cancels the loads. Null stands for the loader itself, whose flag is then cleared.
    bool SetCancelTarget(ZVCancelHelper* target);
    const CFileLoaderOptions& GetOptions() const { return m_options; }

    // --- Request: of the next load -------------------------------------------------------------------------------------------

    // Replaces the headers and the body. A body without a content type is XML, sent with POST. Without copyPost the body stays
    // with the caller and must live until the load ends. A null body or one of size 0 counts as none.
    void SetRequest(const ZVStringArray& headers, const void* postData, int64_t postSize, bool copyPost);
    // Asks for gzip content when the list does not say what is accepted.
    static void AddDefaultHeaders(ZVStringArray& headers, bool addGzip);
    // Adds or replaces an option or header; the names are in ZVRequestHeaders. False for a value that would become more than one
    // line.
    bool SetRequestOption(const wchar_t* key, const ZVString& value);
    // Replaces the headers and the body by a body of a kind with its headers.
    void SetBody(ZVRequestMethod method, const ZVRequestBody& body);
    // A finished form, which must live until the load ends.
    void SetForm(ZVRequestMethod method, const ZVMultipartForm& form);

    // --- Load ------------------------------------------------------------------------------------------------------------------

    bool Load(const ZVFilename& name, ZVBuffer& buffer);
    // Decodes the bytes as ZVString::SetFromBytes does; the text is empty after a failure. A resource with more bytes than a
    // string can hold fails.
    bool LoadText(const ZVFilename& name, ZVString& out, ZVEncoding encoding, bool dropNulBytes);
    // The general form. A cancelled load returns whether the resource opened, and IsCancelled is true; one that was cancelled
    // before it began is false.
    bool LoadToSink(const ZVFilename& name, const CFileLoaderTarget& target);
    // Loads into a file. In the mode Temporary target receives the new file's name. With IfNewer an unchanged resource is a
    // success, the old file stays until the new one is whole, and a symbolic link to it and its permission bits stay too. A load
    // that fails or is cancelled deletes the file that it made, except with KeepPartial. Gzip content that did not come whole is
    // not kept in any mode, since nobody could tell it from the file.
    bool LoadToFile(const ZVFilename& url, ZVFilename& target, ZVLoadToFileMode mode);

    // Stops the running load, and every later one before it begins. From any thread.
    void Cancel();
    bool IsCancelled() const { return m_cancelTarget->IsCancelled(); }

    // --- What the last load met ------------------------------------------------------------------------------------------------

    // Where a redirect led to, the header lines of the answer, and its status. Empty for a local file. They are there after a
    // failed load too.
    const ZVString& GetLocation() const { return m_location; }
    const ZVString& GetAllHeaders() const { return m_allHeaders; }
    const ZVString& GetStatusCode() const { return m_statusCode; }
    // The size of the whole resource in bytes; -1 when it was not known.
    int64_t GetResourceSize() const { return m_resourceSize; }

private:
    // Where LoadText puts its text, and how.
    struct Text
    {
        ZVString& Out;
        ZVEncoding Encoding;
        bool DropNulBytes;
    };

    // One load, as one of the public calls wants it.
    struct Job
    {
        const ZVFilename& Source;
        ZVBuffer* Buffer = nullptr;
        IZVFileLoaderSink* Sink = nullptr;
        // The file that the sink writes, or null. A sink may change it until it is closed.
        const ZVString* SinkPath = nullptr;
        bool* Resume = nullptr;
        // The file that the resource must be newer than, or null, and the date.
        const ZVString* KnownPath = nullptr;
        double IfNewerThan = 0.0;
        // What becomes of the buffer in the end, or null.
        const Text* Decoded = nullptr;
        // The name as the readers take it, which Run fills in.
        ZVString Name {};
        bool IsInternet = false;
    };

    using Outcome = CFileLoaderOutcome;

    // What may be loaded at most, and whether more is a failure or is cut off.
    struct Limit
    {
        int64_t Bytes;
        bool Fails;
    };

    void OnCancel() override;

    static bool IsInternetName(const ZVFilename& name);
    bool Run(Job job);
    Outcome RunGuarded(Job& job);
    bool End(const Job& job, Outcome outcome);
    Outcome RunJob(const Job& job);
    Outcome RunDirectPath(const Job& job);
    Outcome RunReaderPath(const Job& job);
    Outcome OpenReader(const Job& job);
    Outcome GoToStart(const Job& job);
    Outcome MoveContent(const Job& job);
    Outcome JudgeContent(const Job& job, int64_t budget, int64_t loaded);
    Outcome InflateContent(const Job& job) const;
    Limit GetLimit(const Job& job) const;
    void KeepAnswer();
    void ForgetAnswer();
    bool IsNotModified(const Job& job) const;
    bool IsHeadRequest(const Job& job) const;
    ZVWaitMessagePointer CreateWaitMessage();
    ZVString GetInfo(const wchar_t* key) const;

    bool LoadTemporary(const ZVFilename& url, ZVFilename& target);
    bool LoadWhole(const ZVFilename& url, CFileSink& sink, ZVLoadToFileMode mode);
    bool LoadResumed(const ZVFilename& url, const ZVString& path, ZVLoadToFileMode mode);
    bool LoadIfNewer(const ZVFilename& url, const ZVString& path);
    ZVLoadEnd RunToEnd(const Job& job);
    bool Settle(CFileSink& sink, ZVLoadToFileMode mode, ZVLoadEnd end) const;

    ZVCancelHelper m_ownCancel;
    ZVCancelHelper* m_cancelTarget = &m_ownCancel;
    CFileLoaderOptions m_options;
    ZVBuffer m_ownedPost;
    ZVString m_location;
    ZVString m_allHeaders;
    ZVString m_statusCode;
    int64_t m_resourceSize = -1;
    // The server sent its content in this encoding.
    bool m_isGzip = false;
    ZVWaitMessagePointer m_waitMessage;
    // Guards the reader, which Cancel reaches from other threads.
    ZVCriticalSection m_readerLock;
    ZVReaderPointer m_reader;
    std::atomic<bool> m_busy = false;
};
