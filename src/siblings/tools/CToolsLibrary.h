#pragma once

#include "contracts/IZVTools.h"
#include "siblings/tools/CApplicationInformation.h"
#include "siblings/tools/log/CLogManager.h"
#include "siblings/tools/settings/CSettingsStore.h"
#include "siblings/tools/text/CStringTools.h"

#include <optional>

// The tools library: one object for the process, which owns the services and is never destroyed, so that a library which goes
// after it may still log. Before Initialize there are only the string tools, as the other services need to know the data
// folder. No file is touched before a service is really used.
class CToolsLibrary final : public IZVTools
{
public:
    static CToolsLibrary& Get();

    // The first call comes from the main thread before another thread uses the library; it makes all services, so that the
    // getters need no lock. Null stands for an application that has nothing to tell.
    bool Initialize(int32_t flag, IZVApplicationInformation* applicationInformation) override;
    const wchar_t* GetLoadError() override { return m_loadError; }
    IZVApplicationInformation* GetApplicationInformation() override { return Pointer(m_applicationInformation); }
    IZVSettings* GetSettings(bool create) override;
    void* GetFileTypes(bool) override { return nullptr; }
    IZVStringTools* GetTools(bool) override { return &m_stringTools; }
    void* GetDateServices(bool) override { return nullptr; }
    void* GetCompression(bool) override { return nullptr; }
    void* GetThreadServices(bool) override { return nullptr; }
    void* GetNamedLocks(bool) override { return nullptr; }
    ILogManager* GetLogManager(bool create) override;

private:
    CToolsLibrary() = default;

    template <class Service>
    static Service* Pointer(std::optional<Service>& service)
    {
        return service.has_value() ? &*service : nullptr;
    }

    const wchar_t* m_loadError = L"";
    CStringTools m_stringTools;
    std::optional<CApplicationInformation> m_applicationInformation;
    std::optional<CLogManager> m_logManager;
    std::optional<CSettingsStore> m_settings;
};
