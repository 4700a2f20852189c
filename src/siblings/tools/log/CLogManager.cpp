#include "siblings/tools/log/CLogManager.h"

#include "siblings/tools/log/CLogLine.h"

#include <cerrno>
#include <cstdlib>
#include <memory>

namespace
{
ZVString ChooseFile(const ZVString& dataFolder)
{
    ZVString fromEnvironment = ZVNativeBytes::ToText(getenv("ZV_LOG_FILE"));
    if (!fromEnvironment.IsEmpty())
        return fromEnvironment;
    return dataFolder.IsEmpty() ? dataFolder : dataFolder + L"Logs/ZVWorker.log";
}

const wchar_t* AsWide(const wchar_t* format)
{
    return format;
}

ZVString AsWide(const char* format)
{
    return ZVString::FromUTF8(format);
}

// Does the work of one call without its caller noticing anything. An exception means that there was no memory, or that an output
// of another library failed; what was asked for is then dropped.
template <class Work>
void Guarded(Work work)
{
    const int callersError = errno;
    try
    {
        work();
    }
    catch (...)
    {
    }
    errno = callersError;
}

// Sets a flag as long as it lives.
class FlagScope
{
public:
    explicit FlagScope(bool& flag) : m_flag(flag) { m_flag = true; }
    ~FlagScope() { m_flag = false; }

    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& m_flag;
};
}

CLogManager::CLogManager(const ZVString& dataFolder, int64_t rotationSize)
    : m_maskFile(dataFolder), m_file(ChooseFile(dataFolder), rotationSize)
{
}

// All that a line costs when nobody wants its category.
bool CLogManager::IsOff(uint32_t category) const
{
    return (m_wanted.load(std::memory_order_relaxed) & category) == 0;
}

void CLogManager::LogWide(uint32_t category, const wchar_t* scopeName, const wchar_t* format,
                          const ZVFormatRecord* const* arguments, int32_t argumentCount)
{
    if (!IsOff(category))
        Log({category, scopeName}, format, arguments, argumentCount);
}

void CLogManager::LogNarrow(uint32_t category, const wchar_t* scopeName, const char* format,
                            const ZVFormatRecord* const* arguments, int32_t argumentCount)
{
    if (!IsOff(category))
        Log({category, scopeName}, format, arguments, argumentCount);
}

template <class Format>
void CLogManager::Log(const ZVLogSource& source, Format format, const ZVFormatRecord* const* arguments, int32_t argumentCount)
{
    Guarded(
        [&]
        {
            LearnMask();
            if (!IsOff(source.Category))
                Write(source.Category, CLogLine(source, AsWide(format), arguments, argumentCount));
        });
}

void CLogManager::Write(uint32_t category, const CLogLine& line)
{
    if ((m_mask.load(std::memory_order_relaxed) & category) != 0)
    {
        size_t size = 0;
        const std::unique_ptr<char[]> bytes = line.GetBytes(size);
        m_file.Append(bytes.get(), size);
    }
    if (m_hasOutputs.load(std::memory_order_relaxed))
        HandToOutputs(category, line);
}

void CLogManager::HandToOutputs(uint32_t category, const CLogLine& line)
{
    const ZVCriticalSectionLock lock(m_mutex);
    if (m_isHandingOut)
        return;
    const FlagScope handingOut(m_isHandingOut);
    for (m_nextOutput = 0; m_nextOutput < m_outputs.GetCount();)
        m_outputs[m_nextOutput++]->Output(category, line.GetText(), line.GetTextLength());
}

void CLogManager::LearnMask()
{
    if (m_isMaskKnown.load(std::memory_order_acquire)) [[likely]]
        return;
    const ZVCriticalSectionLock lock(m_mutex);
    if (m_isMaskKnown.load(std::memory_order_relaxed))
        return;
    uint32_t mask = AllCategories;
    const char* const fromEnvironment = getenv("ZV_LOG_MASK");
    if (fromEnvironment == nullptr || !CLogMaskFile::Parse(fromEnvironment, mask))
        m_maskFile.Read(mask);
    UseMask(mask);
}

// Called under the mutex, as is the next one.
void CLogManager::UseMask(uint32_t mask)
{
    m_mask.store(mask, std::memory_order_relaxed);
    m_isMaskKnown.store(true, std::memory_order_release);
    UpdateWanted();
}

void CLogManager::UpdateWanted()
{
    const bool hasOutputs = m_outputs.GetCount() > 0;
    const bool wantsAll = hasOutputs || !m_isMaskKnown.load(std::memory_order_relaxed);
    m_hasOutputs.store(hasOutputs, std::memory_order_relaxed);
    m_wanted.store(wantsAll ? AllCategories : m_mask.load(std::memory_order_relaxed), std::memory_order_relaxed);
}

void CLogManager::SetCategoryMask(uint32_t mask)
{
    const ZVCriticalSectionLock lock(m_mutex);
    UseMask(mask);
}

uint32_t CLogManager::GetCategoryMask()
{
    Guarded([this] { LearnMask(); });
    return m_mask.load(std::memory_order_relaxed);
}

void CLogManager::AddCustomOutput(ILogManagerCustomOutput* item)
{
    const ZVCriticalSectionLock lock(m_mutex);
    if (item == nullptr || m_outputs.Find(item) != -1)
        return;
    Guarded([&] { m_outputs.Add(item); });
    UpdateWanted();
}

void CLogManager::RemoveCustomOutput(ILogManagerCustomOutput* item)
{
    const ZVCriticalSectionLock lock(m_mutex);
    const int32_t place = m_outputs.Find(item);
    if (place == -1)
        return;
    m_outputs.RemoveAt(place);
    // The outputs after it have moved up by one. None of them may miss the line that is being handed out.
    if (place < m_nextOutput)
        --m_nextOutput;
    UpdateWanted();
}
