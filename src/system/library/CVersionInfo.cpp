#include "system/library/CVersionInfo.h"

ZVString CVersionInfo::GetFileVersion(const ZVString&, bool threeParts)
{
    return threeParts ? L"0.0.0" : L"0.0.0.0";
}
