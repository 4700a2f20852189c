#include "system/loader/CFileLoaderTransfer.h"

#include "contracts/IZVReader.h"
#include "core/string/ZVStringUTF8.h"
#include "system/loader/CFileLoaderOptions.h"
#include "system/loader/CFileLoaderReport.h"
#include "system/loader/IZVFileLoaderSink.h"
#include "system/loader/ZVCancelHelper.h"

#include <algorithm>
#include <cstring>

namespace
{
bool Holds(const ZVBuffer& bytes, const void* part, size_t size)
{
    return memmem(bytes.GetData(), static_cast<size_t>(bytes.GetUsed()), part, size) != nullptr;
}
}

CFileLoaderTransfer::CFileLoaderTransfer(const CFileLoaderOptions& options, IZVReader& reader, ZVBuffer* buffer,
                                         IZVFileLoaderSink* sink)
    : m_options(options), m_reader(reader), m_buffer(buffer), m_sink(sink), m_isTestOpen(options.Validation.Bytes > 0)
{
}

bool CFileLoaderTransfer::Run(int64_t budget, int64_t blockSize, CFileLoaderReport& report, ZVCancelHelper& cancel)
{
    if (!report.Update(0))
        cancel.Cancel();
    bool isAtEnd = budget < 1;
    while (!isAtEnd && !cancel.IsCancelled())
    {
        const int64_t wanted = GetBlockUpToTest(std::min(blockSize, budget - m_loaded));
        const int64_t count = ReadBlock(wanted);
        if (count < 0)
            return false;
        m_loaded += count;
        if (cancel.IsCancelled())
            return true;
        if (count < wanted && m_reader.HasFailed())
            return false;
        if (!report.Update(m_loaded))
            cancel.Cancel();
        isAtEnd = count < wanted || m_loaded >= budget;
        if (!TestFirstBytes())
            return false;
    }
    return cancel.IsCancelled() || TestShortResource();
}

// Returns how many bytes came, or -1 when they could not be kept.
int64_t CFileLoaderTransfer::ReadBlock(int64_t wanted)
{
    ZVBuffer& target = m_buffer != nullptr ? *m_buffer : m_block;
    const int64_t start = m_buffer != nullptr ? m_buffer->GetUsed() : 0;
    if (start + wanted > target.GetAllocated())
        target.Grow(std::max(start + wanted, target.GetAllocated() * 2));
    const int64_t count = std::clamp<int64_t>(m_reader.Read(target.GetData() + start, wanted), 0, wanted);
    target.SetUsed(start + count);
    return WriteBlock(target.GetData() + start, count) ? count : -1;
}

bool CFileLoaderTransfer::WriteBlock(const uint8_t* bytes, int64_t count)
{
    if (m_isTestOpen && m_buffer == nullptr)
        m_firstBytes.Append(bytes, count);
    return m_sink == nullptr || count == 0 || m_sink->Write(bytes, count) == count;
}

// The test runs on exactly the bytes it wants, so until it is over no block reaches beyond them.
int64_t CFileLoaderTransfer::GetBlockUpToTest(int64_t wanted) const
{
    return m_isTestOpen ? std::min(wanted, m_options.Validation.Bytes - GetFirstBytes().GetUsed()) : wanted;
}

bool CFileLoaderTransfer::TestFirstBytes()
{
    return !m_isTestOpen || GetFirstBytes().GetUsed() < m_options.Validation.Bytes || Test();
}

bool CFileLoaderTransfer::TestShortResource()
{
    return !m_isTestOpen || !m_options.Validation.AtEnd || Test();
}

bool CFileLoaderTransfer::Test()
{
    const CFileLoaderValidation& validation = m_options.Validation;
    const ZVBuffer& bytes = GetFirstBytes();
    m_isTestOpen = false;
    const bool isValid = validation.Validator == nullptr || validation.Validator(bytes, validation.Context);
    m_isRefused = !isValid || !HasMarker(bytes);
    return !m_isRefused;
}

bool CFileLoaderTransfer::HasMarker(const ZVBuffer& bytes) const
{
    const ZVString& marker = m_options.Validation.Marker;
    if (marker.IsEmpty())
        return true;
    const ZVStringUTF8 narrow(marker);
    return Holds(bytes, narrow, strlen(narrow)) ||
           Holds(bytes, marker.GetText(), static_cast<size_t>(marker.GetLength()) * sizeof(wchar_t));
}
