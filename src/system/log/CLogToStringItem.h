#pragma once

#include "contracts/ILogManager.h"
#include "core/containers/ZVStringArray.h"

// Keeps a copy of the log lines of some categories, as long as it lives. A task uses it to put log text into its result.
class CLogToStringItem final : public ILogManagerCustomOutput
{
public:
    // The mask of the categories to keep.
    explicit CLogToStringItem(uint32_t categoryMask);
    ~CLogToStringItem() override;

    CLogToStringItem(const CLogToStringItem&) = delete;
    CLogToStringItem& operator=(const CLogToStringItem&) = delete;

    void Output(uint32_t category, const wchar_t* text, int32_t length) override;

    // The lines so far. Read them only when no other thread is logging.
    const ZVStringArray& GetLines() const { return m_lines; }

private:
    uint32_t m_categoryMask;
    ZVStringArray m_lines;
};
