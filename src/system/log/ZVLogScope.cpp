#include "system/log/ZVLogScope.h"

namespace
{
ZVString NameFromNarrow(const char* name)
{
    ZVString text;
    text.SetFromNarrow(name);
    return text;
}
}

ZVLogScope::ZVLogScope(uint32_t category, const char* name, bool logStartFinish)
    : m_category(category), m_name(NameFromNarrow(name)), m_logStartFinish(logStartFinish)
{
    LogStart();
}

ZVLogScope::ZVLogScope(const ZVLogSource& source, bool logStartFinish) : ZVLogScope(source.Category, source.Name, logStartFinish)
{
}

ZVLogScope::ZVLogScope(uint32_t category, const wchar_t* name, bool logStartFinish)
    : m_category(category), m_name(name), m_logStartFinish(logStartFinish)
{
    LogStart();
}

ZVLogScope::~ZVLogScope()
{
    if (!m_logStartFinish)
        return;
    const int32_t elapsed = GetElapsedMilliseconds();
    if (m_result == NoResult)
        Log("Finish (%d ms)", elapsed);
    else
        Log("Finish (result: %d) (%d ms)", m_result, elapsed);
}

void ZVLogScope::LogStart() const
{
    if (m_logStartFinish)
        Log("Start");
}

void ZVLogScope::LogHex(const void* buffer, int32_t length) const
{
    if (ZVLogManager::Find() == nullptr)
        return;
    const uint8_t* const bytes = static_cast<const uint8_t*>(buffer);
    ZVString dump;
    for (int32_t index = 0; bytes != nullptr && index < length; ++index)
        dump.AppendFormat(L"0x%.2x ", bytes[index]);
    Log("%s", dump);
}
