#include "mp4/model/FourCC.h"

ZVString GetTypeText(uint32_t type)
{
    wchar_t text[5] = {};
    wchar_t* end = text;
    for (int shift = 24; shift >= 0; shift -= 8)
        if (const uint32_t byte = type >> shift & 0xff; byte != 0)
            *end++ = static_cast<wchar_t>(byte);
    return text;
}
