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

// The log manager: appends the lines of the categories in its mask to the log file, in the form of CLogLine, and hands the text
// of every line to the custom outputs. A line that nobody wants costs one test.
//
// The file is "Logs/ZVWorker.log" in the data folder, or the one that the environment variable ZV_LOG_FILE names. The mask is
// that of the variable ZV_LOG_MASK, or else of the mask file, or else all categories: there are no levels, so a narrower default
// would hide failures. The first line looks at mask and file; before it nothing does.
//
// Logging leaves errno as it was and lets no exception out. A line that cannot be made is dropped.
class CLogManager final : public ILogManager
{
public:
    // With an empty data folder there is no log file and no mask file.
    explicit CLogManager(const ZVString& dataFolder, int64_t rotationSize = CLogFile::DefaultRotationSize);

    // For this process only. The setting "Category Mask" is for all processes that start later.
    void SetCategoryMask(uint32_t mask) override;
    uint32_t GetCategoryMask() override;

    void LogWide(uint32_t category, const wchar_t* scopeName, const wchar_t* format, const ZVFormatRecord* const* arguments,
                 int32_t argumentCount) override;
    void LogNarrow(uint32_t category, const wchar_t* scopeName, const char* format, const ZVFormatRecord* const* arguments,
                   int32_t argumentCount) override;

    // The system has each line when its call returns, so there is nothing to do.
    void Flush() override {}
    const wchar_t* GetFilePath() override { return m_file.GetPath(); }

    // Outputs get the lines of all categories, one line at a time, in the order in which the outputs were added. An output may
    // log, and may add and remove outputs, itself included, while it is called; a line that it logs goes to the file alone. After
    // RemoveCustomOutput has returned, no thread calls the output any more.
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

    // Written only under the mutex.
    std::atomic<uint32_t> m_wanted {AllCategories};  // what the file or an output wants; everything until the mask is known
    std::atomic<uint32_t> m_mask {AllCategories};    // what the file wants
    std::atomic<bool> m_isMaskKnown {false};
    std::atomic<bool> m_hasOutputs {false};

    ZVCriticalSection m_mutex;  // guards what follows
    ZVPointerArray<ILogManagerCustomOutput> m_outputs;
    bool m_isHandingOut = false;
    int32_t m_nextOutput = 0;  // while a line is handed out: the index of the output that comes next
};
