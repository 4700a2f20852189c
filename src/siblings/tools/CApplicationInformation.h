#pragma once

#include "contracts/IZVApplicationInformation.h"
#include "core/string/ZVString.h"

// What the process says about itself, overridden by the environment: if the variable ZV_DATA_DIR is set and not empty, it is the
// data directory.
class CApplicationInformation final : public IZVApplicationInformation
{
public:
    // Copies the texts. A null object has empty texts, and a null text counts as empty.
    explicit CApplicationInformation(IZVApplicationInformation* given);

    const wchar_t* GetProductName() override { return m_productName; }
    const wchar_t* GetInstallDirectory() override { return m_installDirectory; }
    const wchar_t* GetDataDirectory() override { return m_dataDirectory; }

private:
    ZVString m_productName;
    ZVString m_installDirectory;
    ZVString m_dataDirectory;
};
