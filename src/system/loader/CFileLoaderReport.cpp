#include "system/loader/CFileLoaderReport.h"

#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVFilename.h"
#include "system/loader/CFileLoaderOptions.h"
#include "system/loader/IZVFileLoaderProgress.h"

IZVWaitMessageFactory* g_pZVWaitMessageFactory = nullptr;

namespace
{
// The callback is called no more often than somebody who watches could see.
constexpr double LeastFraction = 0.005;
constexpr int32_t LongestSilenceMs = 500;
}

CFileLoaderReport::CFileLoaderReport(const CFileLoaderOptions& options, IZVWaitMessage* message, const ZVString& name)
    : m_options(options),
      m_message(message),
      m_name(ZVFilename::FromPath(name).GetNameAndExtension()),
      m_isInternet(ZVFilename::IsRemote(name))
{
}

bool CFileLoaderReport::Update(int64_t loaded)
{
    if (m_message != nullptr)
        m_message->SetText(GetText(loaded), GetPercent(loaded));
    if (m_options.ProgressCallback == nullptr)
        return true;
    NotifyWhenDue(GetFraction(loaded));
    return !m_options.ProgressCallback->Poll();
}

double CFileLoaderReport::GetFraction(int64_t loaded) const
{
    if (m_total < 0)
        return 0;
    return m_total == 0 ? 1 : static_cast<double>(loaded) / static_cast<double>(m_total);
}

int32_t CFileLoaderReport::GetPercent(int64_t loaded) const
{
    return m_total > 0 ? static_cast<int32_t>(loaded * 100 / m_total) : -1;
}

ZVString CFileLoaderReport::GetText(int64_t loaded) const
{
    const ZVString verb = m_isInternet ? L"Downloading" : L"Reading";
    ZVString size = ZVFileSystem::FormatFileSize(loaded);
    if (m_total >= 0)
        size += L" of " + ZVFileSystem::FormatFileSize(m_total);
    const ZVString text = m_name.IsEmpty() ? ZVFormat(L"%s  (%s", verb, size) : ZVFormat(L"%s '%s'  (%s", verb, m_name, size);
    return text + L")";
}

void CFileLoaderReport::NotifyWhenDue(double fraction)
{
    const bool isEdge = fraction != m_lastFraction && (fraction <= 0 || fraction >= 1);
    if (!isEdge && fraction - m_lastFraction < LeastFraction && m_sinceLast.GetMilliseconds() < LongestSilenceMs)
        return;
    m_options.ProgressCallback->Notify(fraction);
    m_lastFraction = fraction;
    m_sinceLast = ZVElapsedTime();
}
