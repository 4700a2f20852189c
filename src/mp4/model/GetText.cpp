#include "mp4/model/GetText.h"

#include <string>

ZVString GetText(std::string_view bytes)
{
    return ZVString::FromUTF8(std::string(bytes).c_str());
}
