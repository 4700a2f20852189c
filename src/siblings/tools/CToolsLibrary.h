#pragma once

#include "contracts/IZVTools.h"
#include "siblings/tools/CApplicationInformation.h"
#include "siblings/tools/compression/CCompression.h"
#include "siblings/tools/date/CDateServices.h"
#include "siblings/tools/filetypes/CFileTypes.h"
#include "siblings/tools/locks/CNamedLocks.h"
#include "siblings/tools/log/CLogManager.h"
#include "siblings/tools/settings/CSettingsStore.h"
#include "siblings/tools/text/CStringTools.h"

#include <optional>

// The tools library: one object for the process, which owns the services. It is never destroyed, so that a library which is
// unloaded after it can still log. No file is touched before a service is really used.
//
// A service that needs nothing from the process is a plain member and available from the start. A service that needs the data
// folder or another service is optional: Initialize creates it, and before that its getter returns null.
class CToolsLibrary final : public IZVTools
{
public:
    static CToolsLibrary& Get();

    // The first call must come from the main thread before another thread uses the library. It creates all services, so the
    // getters need no lock. applicationInformation may be null.
    bool Initialize(int32_t flag, IZVApplicationInformation* applicationInformation) override;
    const wchar_t* GetLoadError() override { return m_loadError; }
    IZVApplicationInformation* GetApplicationInformation() override { return Pointer(m_applicationInformation); }
    IZVSettings* GetSettings(bool create) override;
    IZVFileTypes* GetFileTypes(bool) override { return &m_fileTypes; }
    IZVStringTools* GetTools(bool) override { return &m_stringTools; }
    IZVDateServices* GetDateServices(int32_t number) override { return number == 1 ? &m_dateServices : nullptr; }
    IZVCompression* GetCompression(bool) override { return &m_compression; }
    void* GetThreadServices(bool) override { return nullptr; }
    IZVNamedLocks* GetNamedLocks(bool) override { return Pointer(m_namedLocks); }
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
    CFileTypes m_fileTypes;
    CCompression m_compression;
    CDateServices m_dateServices;
    std::optional<CApplicationInformation> m_applicationInformation;
    std::optional<CLogManager> m_logManager;
    std::optional<CSettingsStore> m_settings;
    std::optional<CNamedLocks> m_namedLocks;
};
