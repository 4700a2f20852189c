#include "system/library/CProcessBlock.h"

#include <cstring>

ZVString CProcessBlock::GetName(pid_t processId)
{
    return ZVFormat(L"Zivora Process v%d (%d)", ProductVersion, processId);
}

pid_t CProcessBlock::GetProcessOfName(const char* name)
{
    static constexpr char Start[] = "Zivora Process v";
    if (strncmp(name, Start, sizeof Start - 1) != 0)
        return 0;
    const ZVString text = ZVString::FromUTF8(name);
    const pid_t processId = text.Mid(text.Find(L'(') + 1).ToInt();
    return processId > 0 && text == GetName(processId) ? processId : 0;
}
