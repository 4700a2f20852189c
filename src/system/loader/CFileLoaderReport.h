#pragma once

#include "contracts/ZVReleasePointer.h"
#include "core/string/ZVString.h"
#include "system/loader/IZVWaitMessage.h"
#include "system/log/ZVElapsedTime.h"

#include <cstdint>

struct CFileLoaderOptions;

using ZVWaitMessagePointer = ZVReleasePointer<IZVWaitMessage>;

// Tells those who follow a load how far it is: the wait message each time, the progress callback as often as is useful.
class CFileLoaderReport
{
public:
    // Options and message must outlive the report; the message may be null. The name is a path or an address.
    CFileLoaderReport(const CFileLoaderOptions& options, IZVWaitMessage* message, const ZVString& name);

    // How many bytes will come; -1 when that is not known.
    void SetTotal(int64_t total) { m_total = total; }
    // Reports how many bytes have come. False when the callback wants to stop.
    bool Update(int64_t loaded);

private:
    double GetFraction(int64_t loaded) const;
    int32_t GetPercent(int64_t loaded) const;
    ZVString GetText(int64_t loaded) const;
    void NotifyWhenDue(double fraction);

    const CFileLoaderOptions& m_options;
    IZVWaitMessage* m_message;
    ZVString m_name;
    bool m_isInternet;
    int64_t m_total = -1;
    double m_lastFraction = -1;
    ZVElapsedTime m_sinceLast;
};
