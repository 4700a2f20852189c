#include "system/log/CLogToStringItem.h"

#include "system/log/ZVLog.h"

CLogToStringItem::CLogToStringItem(uint32_t categoryMask) : m_categoryMask(categoryMask)
{
    if (ILogManager* manager = ZVLogManager::Find())
        manager->AddCustomOutput(this);
}

CLogToStringItem::~CLogToStringItem()
{
    if (ILogManager* manager = ZVLogManager::Find())
        manager->RemoveCustomOutput(this);
}

void CLogToStringItem::Output(uint32_t category, const wchar_t* text, int32_t length)
{
    if ((m_categoryMask & category) != 0)
        m_lines.Add(ZVString(text, length));
}
