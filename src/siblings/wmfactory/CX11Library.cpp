#include "siblings/wmfactory/CX11Library.h"

#include "system/library/ZVRunTimeLibrary.h"

namespace
{
constexpr char FileName[] = "libX11.so.6";
}

const CX11Functions* CX11Library::Get()
{
    static CX11Functions s_functions;
    static const bool s_isOpen = ZVRunTimeLibrary(FileName).BindAll(s_functions) && s_functions.XInitThreads() != 0;
    return s_isOpen ? &s_functions : nullptr;
}
