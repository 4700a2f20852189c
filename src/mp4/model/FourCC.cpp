#include "mp4/model/FourCC.h"

ZVString GetTypeText(uint32_t type)
{
    wchar_t text[5] = {};
    for (int index = 0; index < 4; ++index)
        text[index] = static_cast<wchar_t>(type >> (24 - 8 * index) & 0xff);
    return text;
}
