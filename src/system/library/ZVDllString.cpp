#include "system/library/ZVDllString.h"

#include <new>

void ZVDllString::SetString(const wchar_t* text, int32_t length)
{
    try
    {
        *m_string = length < 0 ? ZVString(text) : ZVString(text, length);
    }
    catch (const std::bad_alloc&)
    {
    }
}

wchar_t* ZVDllString::GetBuffer(int32_t length, bool keepContents)
{
    try
    {
        return m_string->GetBuffer(length, false, keepContents);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}
