#pragma once

#include "core/string/ZVString.h"
#include "system/log/ZVElapsedTime.h"
#include "system/log/ZVLog.h"

// Names the log lines of a function. When asked, it also frames them with the lines "Start" and "Finish (%d ms)", or "Finish
// (result: %d) (%d ms)" once a result is set. Belongs to one thread.
class ZVLogScope
{
public:
    ZVLogScope(const ZVLogSource& source, bool logStartFinish);
    // The name is Latin-1, or wide.
    ZVLogScope(uint32_t category, const char* name, bool logStartFinish);
    ZVLogScope(uint32_t category, const wchar_t* name, bool logStartFinish);
    ~ZVLogScope();

    ZVLogScope(const ZVLogScope&) = delete;
    ZVLogScope& operator=(const ZVLogScope&) = delete;

    // The result that the finish line shows.
    void SetResult(int32_t result) { m_result = result; }

    // Time since the construction, in whole milliseconds, rounded down.
    int32_t GetElapsedMilliseconds() const { return m_elapsed.GetMilliseconds(); }

    // Logs a line with at most 20 arguments; the format is UTF-8. Without arguments it is a fixed text, in which percent signs
    // stand for themselves.
    template <class... Arguments>
    void Log(const char* format, const Arguments&... arguments) const
    {
        GetSource().Log(format, arguments...);
    }

    // The same with a wide format.
    template <class... Arguments>
    void LogWide(const wchar_t* format, const Arguments&... arguments) const
    {
        const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
        ZVLogManager::Write(GetSource(), format, list.Records(), list.Count());
    }

    // Logs the bytes of a buffer in one line, each as "0x%.2x ". Unlike the other calls it does its own formatting, even for a
    // category that is off.
    void LogHex(const void* buffer, int32_t length) const;

private:
    // The value of the result until one is set.
    static constexpr int32_t NoResult = static_cast<int32_t>(0x8a33f231);

    ZVLogSource GetSource() const { return {m_category, m_name}; }
    void LogStart() const;

    uint32_t m_category;
    ZVString m_name;
    bool m_logStartFinish;
    ZVElapsedTime m_elapsed;
    int32_t m_result = NoResult;
};
