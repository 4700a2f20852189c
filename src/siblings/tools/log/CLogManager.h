#pragma once

#include "contracts/ILogManager.h"
#include "core/containers/ZVPointerArray.h"
#include "core/string/ZVString.h"
#include "siblings/tools/log/CLogFile.h"
#include "siblings/tools/log/CLogMaskFile.h"
#include "system/log/ZVLog.h"
#include "system/thread/ZVCriticalSection.h"

#include <atomic>
#include <cstdint>

class CLogLine;

// The log manager: appends each line of the categories in its mask to the log file, in the form of CLogLine, and hands its text
// to the custom outputs. A category that nobody wants costs one test.
//
// The file is "Logs/ZVWorker.log" in the data folder, or what the environment variable ZV_LOG_FILE names. The mask is that of
// the variable ZV_LOG_MASK, or else of the mask file, or else all categories: there are no levels, so a narrower default would
// hide failures. Mask and file are looked at by the first line, not before.
//
// Logging leaves errno as it was and lets no exception out. A line that does not work out is dropped.
class CLogManager final : public ILogManager
{
public:
    // An empty data folder has no log file and no mask file.
    explicit CLogManager(const ZVString& dataFolder, int64_t rotationSize = CLogFile::DefaultRotationSize);

    // For this process only; the setting "Category Mask" is for all that start later.
    void SetCategoryMask(uint32_t mask) override;
    uint32_t GetCategoryMask() override;

    void LogWide(uint32_t category, const wchar_t* scopeName, const wchar_t* format, const ZVFormatRecord* const* arguments,
                 int32_t argumentCount) override;
    void LogNarrow(uint32_t category, const wchar_t* scopeName, const char* format, const ZVFormatRecord* const* arguments,
                   int32_t argumentCount) override;

    // Each line is with the system when its call returns, so nothing is left to do.
    void Flush() override {}
    const wchar_t* GetFilePath() override { return m_file.GetPath(); }

    // Outputs get the lines of all categories, in the order in which they were added, one line at a time. While one is called
    // it may add and remove outputs, itself too, and log: such a line goes to the file alone. After RemoveCustomOutput has
    // returned to another thread the output is not called any more.
    void AddCustomOutput(ILogManagerCustomOutput* item) override;
    void RemoveCustomOutput(ILogManagerCustomOutput* item) override;

private:
    static constexpr uint32_t AllCategories = UINT32_MAX;

    bool IsOff(uint32_t category) const;
    template <class Format>
    void Log(const ZVLogSource& source, Format format, const ZVFormatRecord* const* arguments, int32_t argumentCount);
    void Write(uint32_t category, const CLogLine& line);
    void HandToOutputs(uint32_t category, const CLogLine& line);
    void LearnMask();
    void UseMask(uint32_t mask);
    void UpdateWanted();

    CLogMaskFile m_maskFile;
    CLogFile m_file;

    // Written under the mutex.
    std::atomic<uint32_t> m_wanted {AllCategories};  // what the file or an output wants; all until the mask is known
    std::atomic<uint32_t> m_mask {AllCategories};    // what the file wants
    std::atomic<bool> m_isMaskKnown {false};
    std::atomic<bool> m_hasOutputs {false};

    ZVCriticalSection m_mutex;  // guards what follows
    ZVPointerArray<ILogManagerCustomOutput> m_outputs;
    bool m_isHandingOut = false;
    int32_t m_nextOutput = 0;  // while a line is handed out: the place of the output after the one that is called
};
