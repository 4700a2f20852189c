#include "worker/ZVSourceFile.h"

#include "system/log/ZVLog.h"

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"LoadSourceFile"};
}

bool LoadSourceFile(const ZVString& path, ZVEncoding encoding, ZVString& text)
{
    ZVString withoutNuls;
    if (!text.LoadFromFile(path, encoding) || !withoutNuls.LoadFromFile(path, encoding, true))
        return false;
    if (text == withoutNuls)
        return true;
    Source.Log("The file is no text, since it has NUL characters: %s", path);
    return false;
}
