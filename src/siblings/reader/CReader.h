#pragma once

#include "contracts/IZVReader.h"
#include "contracts/ZVReleasePointer.h"

#include <atomic>

// What all readers share: their state, and the operations that mean nothing to most of them. A reader of bytes that are at hand
// ignores the request and has no answer to report.
class CReader : public ZVReleasable<IZVReader>
{
public:
    CReader() = default;
    CReader(const CReader&) = delete;
    CReader& operator=(const CReader&) = delete;

    int64_t GetPosition() override { return m_position; }
    int64_t Seek(int64_t position) override;
    void GetInfo(const wchar_t* key, IZVDllString& value) override;
    void SetTimeout(int32_t) override {}
    void SetPost(const void*, int64_t) override {}
    void SetHeaders(const wchar_t*) override {}
    bool IsOpen() override { return m_isOpen; }
    bool HasFailed() override { return m_hasFailed; }
    void Cancel() override { m_isCancelled = true; }

protected:
    bool IsCancelled() const { return m_isCancelled; }

    int64_t m_position = 0;
    bool m_isOpen = false;
    bool m_hasFailed = false;

private:
    std::atomic<bool> m_isCancelled = false;
};
