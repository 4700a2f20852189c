#pragma once

#include "core/string/ZVString.h"
#include "siblings/reader/CReader.h"
#include "siblings/reader/internet/CRequest.h"
#include "siblings/reader/internet/CTransfer.h"

#include <string>

// Reads what an HTTP address gives, as it comes in. A seek takes effect with the next Read. A short way forward is read over; any
// other place is asked for as a range, and when a server sends the whole resource instead, the bytes up to that place are read
// over. The answer to a POST or PUT is never asked for again, so in it there is no way back.
class CInternetReader final : public CReader
{
public:
    explicit CInternetReader(const ZVString& name);

    // Before Open.
    void SetLimits(const CTransferLimits& limits) { m_transfer.SetLimits(limits); }

    bool Open() override;
    int64_t Read(void* bytes, int64_t count) override;
    int64_t GetSize() override { return m_size; }
    int64_t Seek(int64_t position) override;
    void GetInfo(const wchar_t* key, IZVDllString& value) override;
    void SetTimeout(int32_t milliseconds) override { m_transfer.SetTimeout(milliseconds); }
    void SetPost(const void* data, int64_t size) override { m_request.SetBody(data, size); }
    void SetHeaders(const wchar_t* headers) override;
    void Cancel() override;

private:
    bool OpenAnswer();
    bool TakeAnswer();
    bool CanAskAgain() const { return !m_request.HasEffect(); }
    bool GoTo(int64_t position);
    bool AskAgain(int64_t position);
    bool IsSameResource() const;
    bool SkipTo(int64_t position);
    int64_t ReadStream(char* bytes, int64_t count);
    bool Refuse(const char* reason) const;

    std::string m_address;
    CRequest m_request;
    CTransfer m_transfer;
    bool m_hasHeaders = true;
    int64_t m_size = -1;
    std::string m_tag;
    // The place in the resource of the next byte that the transfer gives, and the one that its answer was asked for.
    int64_t m_streamPosition = 0;
    int64_t m_askedPosition = 0;
    bool m_isStreaming = false;
    // A failed read is not tried again until the caller goes elsewhere.
    bool m_isBroken = false;
};
