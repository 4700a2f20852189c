#include "system/library/ZVLoadLibrary.h"

#include "system/library/CProcessInfo.h"
#include "system/library/ZVNativeBytes.h"
#include "system/library/ZVStandardOutput.h"
#include "system/log/ZVLog.h"

#include <cerrno>
#include <dlfcn.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVLoadLibrary"};
}

bool ZVLoadLibrary::Load(const ZVString& path, int32_t logFailure, int32_t)
{
    Unload();
    if (path.IsEmpty())
        return false;
    errno = 0;
    m_handle = dlopen(ZVNativeBytes(path), RTLD_LAZY | RTLD_NODELETE);
    if (m_handle == nullptr)
    {
        const int32_t error = errno;
        const char* const reason = dlerror();
        if (logFailure < 0)
            Source.Log("Loading %s failed, error: %d", path, error);
        ZVStandardOutput::PrintFormat(L"\n\nERROR in ZVLoadLibrary: error=%s, file=%s\n\n", reason, path);
        return false;
    }
    if (auto* const attach = GetFunction<void(int32_t)>("Attach"))
        attach(CProcessInfo::Get().TakeNextAttachValue());
    return true;
}

void ZVLoadLibrary::Unload()
{
    if (m_handle == nullptr)
        return;
    if (auto* const detach = GetFunction<void()>("Detach"))
        detach();
    dlclose(m_handle);
    m_handle = nullptr;
}

void* ZVLoadLibrary::GetSymbol(const char* name) const
{
    return m_handle == nullptr ? nullptr : dlsym(m_handle, name);
}
