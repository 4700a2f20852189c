#include "system/library/ZVModuleMessage.h"

#include "core/string/ZVStringUTF8.h"

#include <cstdio>

ZVString ZVModuleMessage::GetText(const ZVString& module, const ZVString& reason)
{
    return ZVFormat(
        L"The following module has failed to load:\r\n%s\r\n\r\nIt has reported the following error:\r\n\r\n%s\r\n\r\n"
        L"Please reinstall the latest version of the program.",
        module, reason);
}

void ZVModuleMessage::Print(const ZVString& module, const ZVString& reason)
{
    fputs(ZVStringUTF8(GetText(module, reason)), stderr);
}
